#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "marovia/codec.h"

#include "tests/cli/tool_process.h"
#include "tests/support/test_images.h"

namespace marovia::test {
namespace {

using Words = std::vector<std::string>;

struct Case {
  int status;
  std::string named;  // what the line says
  Words words;
};

class Failures : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_.Write("in.pgm", PgmText(NamedImage("blobs", 40, 56)));
    ASSERT_EQ(folder_.Run({"compress", "in.pgm", "ok.awf"}).status, 0);
    ASSERT_EQ(folder_.Run({"compress", "in.pgm", "ok.awg", "--lossless"}).status, 0);
  }

  // Every case ends with its status and one line, writes nothing to standard output, and changes no
  // file.
  void Check(const std::vector<Case>& cases) const {
    const auto before = folder_.Names();
    for (const Case& one : cases) {
      const ToolResult result = folder_.Run(one.words);
      const std::string what = ::testing::PrintToString(one.words) + result.err;
      EXPECT_EQ(result.status, one.status) << what;
      EXPECT_TRUE(result.err.starts_with("marovia: ")) << what;
      EXPECT_EQ(std::ranges::count(result.err, '\n'), 1) << what;
      EXPECT_NE(result.err.find(one.named), std::string::npos) << what;
      EXPECT_EQ(result.out, "") << what;
      EXPECT_EQ(folder_.Names(), before) << what;
    }
  }

  ScratchFolder folder_;
};

TEST_F(Failures, OfUsageEndWithTwo) {
  Check({{2, "foo", {"foo"}},
         {2, "OUT", {"compress", "in.pgm"}},
         {2, "--rat", {"compress", "in.pgm", "o", "--rat", "1"}},
         {2, "excludes", {"compress", "in.pgm", "o", "--rate", "1", "--bytes", "9"}},
         {2, "excludes", {"compress", "in.pgm", "o", "--rate", "1", "--lossless"}},
         {2, "'inf'", {"compress", "in.pgm", "o", "--rate", "inf"}},
         {2, "'0'", {"compress", "in.pgm", "o", "--rate", "0"}},
         {2, "'0,5'", {"compress", "in.pgm", "o", "--rate", "0,5"}},
         {2, "'0'", {"compress", "in.pgm", "o", "--levels", "0"}},
         {2, "'12x'", {"compress", "in.pgm", "o", "--bytes", "12x"}},
         {2, "5 bytes", {"compress", "in.pgm", "o", "--bytes", "5"}},
         {2, "'1'", {"compress", "in.pgm", "o", "--region", "0,0,9,9", "--share", "1"}},
         {2, "--region", {"compress", "in.pgm", "o", "--share", "0.5"}},
         {2, "'1,2,3'", {"compress", "in.pgm", "o", "--region", "1,2,3"}},
         {2, "row 40", {"compress", "in.pgm", "o", "--region", "0,0,40,9"}},
         {2, "column 56", {"measure", "in.pgm", "in.pgm", "--region", "0,0,39,56"}},
         {2, "5/3", {"compress", "in.pgm", "o", "--lossless", "--wavelet", "9/7"}},
         {2, "aswdr", {"compress", "in.pgm", "o", "--lossless", "--method", "wdr"}},
         {2, ".awf", {"compress", "in.pgm", "o.awb"}},
         {2, ".bmp", {"decompress", "ok.awf", "o.png"}},
         {2, ".awf", {"truncate", "ok.awg", "o.awg", "--rate", "0.5"}},
         {2, "--bytes", {"truncate", "ok.awf", "o.awf"}},
         {2, "--format", {"info", "-"}},
         {2, "--json", {"compress", "in.pgm", "-", "--json"}},
         {2, "one of the two", {"measure", "-", "-"}}});
}

TEST_F(Failures, OfReadingAndWritingEndWithFour) {
  std::filesystem::create_directory(folder_.Path("folder"));
  std::filesystem::create_directory(folder_.Path("folder.awf"));
  Check({{4, "missing.pgm", {"compress", "missing.pgm", "o"}},
         {4, "folder", {"compress", "folder", "o"}},
         {4, "folder", {"decompress", "folder.awf", "o.pgm"}},
         {4, "folder", {"compress", "in.pgm", "folder"}},
         {4, "folder", {"compress", "in.pgm", "folder.awf", "-f"}},
         {4, "nowhere/o.awf", {"compress", "in.pgm", "nowhere/o"}},
         {4, "ok.awf: already exists", {"compress", "in.pgm", "ok"}},
         {4, "/dev/full", {"compress", "in.pgm", "/dev/full"}},
         {4, "in.pgm: already exists", {"decompress", "ok.awf", "in.pgm"}}});
  for (const Words& words : {Words{"info", "ok.awf"}, {"decompress", "ok.awf", "-"}, {"--help"}}) {
    const ToolResult full = folder_.RunInto("/dev/full", words);
    EXPECT_EQ(full.status, 4);
    EXPECT_NE(full.err.find("standard output"), std::string::npos) << full.err;
  }
}

TEST_F(Failures, OfForeignFilesEndWithFive) {
  const std::string good = folder_.Read("ok.awf");
  folder_.Write("empty.awf", "");
  folder_.Write("empty.pgm", "");
  folder_.Write("header.awf", good.substr(0, 13));
  folder_.Write("noise.awf", std::string(200, '\xff'));
  folder_.Write("cut.pgm", folder_.Read("in.pgm").substr(0, 500));
  folder_.Write("deep.pgm", "P2 3 3 1023 0 1 2 3 4 5 6 7 1023");
  Check({{5, "empty.awf", {"decompress", "empty.awf", "o.pgm"}},
         {5, "empty.pgm", {"compress", "empty.pgm", "o"}},
         {5, "13", {"decompress", "header.awf", "o.pgm"}},
         {5, "header.awf", {"info", "header.awf"}},
         {5, "noise.awf", {"decompress", "noise.awf", "o.pgm"}},
         {5, "cut.pgm", {"compress", "cut.pgm", "o"}},
         {5, ".pgm", {"info", "in.pgm"}},
         {5, "--convert", {"compress", "deep.pgm", "o", "--lossless"}}});
  EXPECT_EQ(folder_.Run({"compress", "deep.pgm", "deep", "--lossless", "--convert"}).status, 0);
}

TEST_F(Failures, OfLimitsEndWithSixBeforeAnythingIsAllocated) {
  std::string header = folder_.Read("ok.awf").substr(0, 14);
  for (const std::size_t side : {5, 7}) header.replace(side, 2, "\xff\x7f");
  folder_.Write("huge.awf", header);
  folder_.Write("huge.pgm", "P5 32767 32767 255\n");
  folder_.Write("long.pgm", std::string(2'000'000, ' '));
  Check({{6, "huge.awf", {"decompress", "huge.awf", "o.pgm"}},
         {6, "huge.awf", {"info", "huge.awf"}},
         {6, "huge.pgm", {"compress", "huge.pgm", "o"}},
         {6, "2239", {"compress", "in.pgm", "o", "--max-pixels", "2239"}},
         {6, "1000", {"compress", "long.pgm", "o", "--max-pixels", "1000"}}});
  EXPECT_EQ(folder_.Run({"compress", "in.pgm", "o", "--max-pixels", "2240"}).status, 0);
}

TEST_F(Failures, OfAnImageOfAnotherShapeEndWithOne) {
  folder_.Write("other.pgm", PgmText(NamedImage("blobs", 56, 40)));
  Check({{1, "other.pgm", {"measure", "in.pgm", "other.pgm"}}});
}

TEST_F(Failures, OfACutFileLeaveAPictureAndEndWithThree) {
  const std::string whole = folder_.Read("ok.awf");
  for (const std::size_t bytes : {std::size_t{14}, std::size_t{15}, whole.size() / 2}) {
    folder_.Write("cut.awf", whole.substr(0, bytes));
    const ToolResult result = folder_.Run({"decompress", "cut.awf", "cut.pgm", "-f"});
    EXPECT_EQ(result.status, 3) << bytes;
    EXPECT_TRUE(result.err.starts_with("marovia: cut.awf: cut short")) << result.err;
    EXPECT_EQ(folder_.Read("cut.pgm").size(), folder_.Read("in.pgm").size());
  }
  // Bits that are missing behind those asked for are not missed.
  EXPECT_EQ(folder_.Run({"decompress", "cut.awf", "cut.pgm", "-f", "--rate", "0.1"}).status, 0);
}

}  // namespace
}  // namespace marovia::test
