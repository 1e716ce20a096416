// Runs of the tool during which an allocation fails.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

#include "marovia/image.h"

#include "tests/campaigns/failing_new.h"

namespace marovia::test {

struct Outcome {
  std::optional<Bytes> result;  // none where the shortage was too much
  bool struck = false;
};

Bytes ReadAll(const std::string& path);

// The tool in a process of its own, whose end tells of a shortage by its status and a line. Works
// in the current folder.
class ToolRun {
 public:
  static constexpr const char* kOutput = "result.awf";  // its output file, if it has one

  explicit ToolRun(std::vector<std::string> words);

  // What it writes; std::runtime_error where it ends in any other way than it should.
  Outcome operator()(std::int64_t nth, Shortage shortage);

 private:
  pid_t Start(std::int64_t nth, Shortage shortage);
  [[nodiscard]] int Wait(pid_t process) const;

  std::vector<std::string> words_;
  Bytes whole_;
};

}  // namespace marovia::test
