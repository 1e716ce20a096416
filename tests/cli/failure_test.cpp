#include "tests/cli/tool_process.h"

namespace marovia::test {
namespace {

class Failures : public ToolTest {
 protected:
  void SetUp() override {
    folder_.Write("in.pgm", PgmText(NamedImage("blobs", 40, 56)));
    Done("compress in.pgm ok.awf");
    Done("compress in.pgm ok.awg --lossless");
  }

  // What the commands of the table find.
  void WriteBadFiles() const {
    const std::string image = folder_.Read("in.pgm");
    const std::string good = folder_.Read("ok.awf");
    const std::pair<std::string, std::string> files[] = {
        {"empty.awf", ""},
        {"empty.pgm", ""},
        {"header.awf", good.substr(0, 13)},
        {"noise.awf", std::string(200, '\xff')},
        {"cut.pgm", image.substr(0, 500)},
        {"deep.pgm", "P2 3 3 1023 0 1 2 3 4 5 6 7 1023"},
        {"image.awf", image},
        {"image.awg", std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\1\0\0\0\1\0", 24)},
        {"lossless.awf", folder_.Read("ok.awg")},
        {"lossy.awg", good},
        {"huge.awf", good.substr(0, 5) + "\xff\x7f\xff\x7f" + good.substr(9, 5)},
        {"huge.pgm", "P5 32767 32767 255\n"},
        {"long.pgm", std::string(2'000'000, ' ')},
        {"other.pgm", PgmText(NamedImage("blobs", 56, 40))}};
    for (const auto& [name, content] : files) folder_.Write(name, content);
    for (const char* name : {"folder", "folder.awf"})
      std::filesystem::create_directory(folder_.Path(name));
  }
};

// With its status and one line, nothing on standard output, and no file changed.
TEST_F(Failures, EndAsTheTableSays) {
  WriteBadFiles();
  const Words before = folder_.Names();
  for (auto& row : ReadTable("tool_failures.tsv")) {
    const std::string& command = row["command"];
    const ToolResult result = Run(command);
    SCOPED_TRACE(command + ": " + result.err);
    EXPECT_EQ(std::to_string(result.status), row["status"]);
    EXPECT_TRUE(result.err.starts_with("marovia: ") && LinesIn(result.err) == 1);
    EXPECT_NE(result.err.find(row["said"]), std::string::npos) << row["said"];
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(folder_.Names(), before);
  }
  Done("compress deep.pgm deep --lossless --convert");
  Done("compress in.pgm o --max-pixels 2240");
}

TEST_F(Failures, OfStandardOutputEndWithFour) {
  for (const char* command : {"info ok.awf", "decompress ok.awf -", "--help"}) {
    const ToolResult full = Run(command, "", "/dev/full");
    EXPECT_EQ(full.status, 4);
    EXPECT_NE(full.err.find("standard output"), std::string::npos) << full.err;
  }
}

TEST_F(Failures, OfACutFileLeaveAPictureAndEndWithThree) {
  const std::string whole = folder_.Read("ok.awf");
  for (const std::size_t bytes : {std::size_t{14}, std::size_t{15}, whole.size() / 2}) {
    folder_.Write("cut.awf", whole.substr(0, bytes));
    const ToolResult result = Run("decompress cut.awf cut.pgm -f");
    EXPECT_EQ(result.status, 3) << bytes;
    EXPECT_TRUE(result.err.starts_with("marovia: cut.awf: cut short")) << result.err;
    EXPECT_EQ(folder_.Read("cut.pgm").size(), folder_.Read("in.pgm").size());
  }
  // Bits that are missing behind those asked for are not missed.
  Done("decompress cut.awf cut.pgm -f --rate 0.1");
}

}  // namespace
}  // namespace marovia::test
