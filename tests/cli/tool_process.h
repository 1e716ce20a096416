// The built tool as a process, in a folder of its own.
#pragma once

#include <nlohmann/json.hpp>
#include <sys/wait.h>

#include "tests/support/testing.h"

namespace marovia::test {

using Words = std::vector<std::string>;
using Json = nlohmann::json;

struct ToolResult {
  int status;  // the exit status; above 128 where a signal ended it
  std::string out;
  std::string err;
};

class ToolTest : public testing::Test {
 protected:
  // Runs the tool with the words behind its name, as a shell reads them. Standard output may go to
  // a file of the system, such as /dev/full.
  [[nodiscard]] ToolResult Run(const std::string& words, const std::string& input = "",
                               const std::string& outFile = "") const {
    streams_.Write("in", input);
    streams_.Write("out", "");
    const std::string out = outFile.empty() ? streams_.Path("out") : outFile;
    const std::string command = "cd " + folder_.Path().string() + " && exec " MAROVIA_TOOL " " +
                                words + " <" + streams_.Path("in") + " >" + out + " 2>" +
                                streams_.Path("err");
    const int status = std::system(command.c_str());
    return {WEXITSTATUS(status), streams_.Read("out"), streams_.Read("err")};
  }
  // A run that must end well; its standard output.
  std::string Done(const std::string& words, const std::string& input = "") const {
    const ToolResult result = Run(words, input);
    EXPECT_EQ(result.status, 0) << words << '\n' << result.err;
    return result.out;
  }
  [[nodiscard]] Json Record(const std::string& words) const {
    return Json::parse(Done(words + " --json"));
  }

  TemporaryFolder folder_;

 private:
  TemporaryFolder streams_;
};

inline auto LinesIn(const std::string& text) {
  return std::ranges::count(text, '\n');
}

// The samples of an image as a binary PGM, and back from any format.
inline std::string PgmText(const Image& image) {
  const Bytes bytes = WritePgm(image);
  return {bytes.begin(), bytes.end()};
}
inline Image ImageIn(const std::string& file) {
  return ReadImage(BytesOf(file)).image;
}

}  // namespace marovia::test
