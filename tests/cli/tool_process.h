// The built tool as a process, in a folder of its own.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "marovia/image.h"

namespace marovia::test {

struct ToolResult {
  int status = -1;  // the exit status; minus the signal that ended it
  std::string out;
  std::string err;
};

// A folder that is empty at first and gone at the end of the test.
class ScratchFolder {
 public:
  ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder();

  [[nodiscard]] std::string Path(const std::string& name) const;
  void Write(const std::string& name, const std::string& content) const;
  [[nodiscard]] std::string Read(const std::string& name) const;
  [[nodiscard]] std::vector<std::string> Names() const;  // sorted

  // Runs the tool with this folder as its current one.
  [[nodiscard]] ToolResult Run(const std::vector<std::string>& words,
                               const std::string& input = "") const;

  // The same with standard output going to a file of the system, such as /dev/full.
  [[nodiscard]] ToolResult RunInto(const std::string& outFile,
                                   const std::vector<std::string>& words) const;

 private:
  [[nodiscard]] ToolResult Spawn(const std::vector<std::string>& words, const std::string& input,
                                 const std::string& outFile) const;

  std::filesystem::path folder_;   // what the tool sees
  std::filesystem::path streams_;  // beside it, what its standard streams are tied to
};

std::string PgmText(const Image& image);

}  // namespace marovia::test
