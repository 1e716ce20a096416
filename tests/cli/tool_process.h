// The built tool as a process, in a folder of its own.
#pragma once

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "marovia/image.h"

namespace marovia::test {

using Words = std::vector<std::string>;
using Json = nlohmann::json;

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

  [[nodiscard]] std::string Path(const std::string& name) const { return folder_ / name; }
  void Write(const std::string& name, const std::string& content) const;
  [[nodiscard]] std::string Read(const std::string& name) const;
  [[nodiscard]] Words Names(const std::string& folder = ".") const;  // sorted

  // Runs the tool with this folder as its current one. Standard output may go to a file of the
  // system, such as /dev/full.
  [[nodiscard]] ToolResult Run(const Words& words, const std::string& input = "",
                               const std::string& outFile = "") const;

 private:
  std::filesystem::path folder_;  // what the tool sees; beside it, its standard streams
};

class ToolTest : public ::testing::Test {
 protected:
  // A run that must end well; its standard output.
  std::string Done(const Words& words, const std::string& input = "") const;
  [[nodiscard]] Json Record(Words words) const;  // the same with --json

  ScratchFolder folder_;
};

inline auto LinesIn(const std::string& text) {
  return std::ranges::count(text, '\n');
}

// The samples of an image as a binary PGM, and back from any format.
std::string PgmText(const Image& image);
Image ImageIn(const std::string& file);

}  // namespace marovia::test
