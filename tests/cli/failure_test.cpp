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
         {2, "mean compress?", {"compres", "in.pgm", "o"}},
         {2, "mean truncate?", {"help", "trunctae"}},
         {2, "(see", {"xyzzy", "in.pgm"}},
         {2, "mean --rate or --ratio?", {"compress", "in.pgm", "o", "--rat", "1"}},
         {2, "mean --lossless?", {"compress", "in.pgm", "o", "-losless"}},
         {2, "needs a value", {"compress", "in.pgm", "o", "--rate"}},
         {2, "only once", {"compress", "in.pgm", "o", "--rate", "1", "--rate", "2"}},
         {2, "before the command", {"--json", "info", "ok.awf"}},
         {2, "one name too many", {"info", "ok.awf", "ok.awg"}},
         {2, "OUT is an empty name", {"compress", "in.pgm", ""}},
         {2, "FILE is an empty name", {"info", ""}},
         {2, "excludes", {"compress", "in.pgm", "o", "--rate", "1", "--bytes", "9"}},
         {2, "'inf'", {"compress", "in.pgm", "o", "--rate", "inf"}},
         {2, "'0'", {"compress", "in.pgm", "o", "--rate", "0"}},
         {2, "'0,5'", {"compress", "in.pgm", "o", "--rate", "0,5"}},
         {2, "5 bytes", {"compress", "in.pgm", "o", "--bytes", "5"}},
         {2, "'1'", {"compress", "in.pgm", "o", "--region", "0,0,9,9", "--share", "1"}},
         {2, "--region", {"compress", "in.pgm", "o", "--share", "0.5"}},
         {2, "'1,2,3'", {"compress", "in.pgm", "o", "--region", "1,2,3"}},
         {2, "row 40", {"compress", "in.pgm", "o", "--region", "0,0,40,9"}},
         {2, "5/3", {"compress", "in.pgm", "o", "--lossless", "--wavelet", "9/7"}},
         {2, "aswdr", {"compress", "in.pgm", "o", "--lossless", "--method", "wdr"}},
         {2, "or --method context", {"compress", "in.pgm", "o.awh", "--lossless", "--method", "wdr"}},
         {2, "always pad", {"compress", "in.pgm", "o.awh", "--pad", "never"}},
         {2, "15 bytes", {"compress", "in.pgm", "o.awh", "--bytes", "15"}},
         {2, "written is .awh", {"compress", "in.pgm", "o.awf", "--method", "context"}},
         {2, "written is .awd", {"compress", "in.pgm", "o.awb", "--method", "aswdr"}},
         {2, "written is .awg", {"compress", "in.pgm", "o.awf", "--lossless"}},
         {2, "written is .awf", {"compress", "in.pgm", "o.awg", "--rate", "1"}},
         {2, "written is .awf", {"compress", "in.pgm", "o.png"}},
         {2, ".bmp", {"decompress", "ok.awf", "o.png"}},
         {2, "--bytes", {"truncate", "ok.awf", "o.awf"}},
         {2, "--format", {"info", "-"}},
         {2, "--json", {"compress", "in.pgm", "-", "--json"}},
         {2, "one of the two", {"measure", "-", "-"}},
         {2, ".svg", {"curve", "in.pgm", "o.png"}},
         {2, "--rates", {"curve", "in.pgm", "--rates", "2:1"}},
         {2, "''", {"curve", "in.pgm", "--rates", "0.1,,1"}},
         {2, "'awg'", {"curve", "in.pgm", "--coders", "awg"}},
         {2, "'2+2'", {"curve", "in.pgm", "--wavelets", "2+2"}},
         {2, "--gain", {"difference", "in.pgm", "in.pgm", "o.pgm", "--gain", "0"}},
         {2, "4096", {"thumbnail", "ok.awf", "o.png", "--size", "4097"}},
         {2, "has no name", {"compress", "-", "in.pgm", "--output-dir", "o"}},
         {2, "--output-dir", {"compress", "in.pgm", "a", "b"}},
         {2, "--output-dir", {"compress", "in.pgm", "o", "-j", "2"}},
         {2, "share 3 of 2", {"compress", "in.pgm", "--output-dir", "o", "--shard", "3/2"}},
         {2, "holds lines", {"compress", "--output-dir", "o", "--files0-from", "in.pgm"}},
         {2, "IN is required", {"compress", "--output-dir", "o"}}});
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
  folder_.Write("image.awf", folder_.Read("in.pgm"));
  folder_.Write("image.awg", std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\1\0\0\0\1\0", 24));
  folder_.Write("lossless.awf", folder_.Read("ok.awg"));
  folder_.Write("lossy.awg", good);
  Check({{5, "empty.awf", {"decompress", "empty.awf", "o.pgm"}},
         {5, "empty.pgm", {"compress", "empty.pgm", "o"}},
         {5, "13", {"decompress", "header.awf", "o.pgm"}},
         {5, "noise.awf", {"decompress", "noise.awf", "o.pgm"}},
         {5, "cut.pgm", {"compress", "cut.pgm", "o"}},
         {5, ".pgm", {"info", "in.pgm"}},
         {5, "Netpbm", {"decompress", "image.awf", "o.pgm"}},
         {5, "PNG", {"thumbnail", "image.awg", "o.png"}},
         {5, "that of an .awg file of 40 rows", {"info", "lossless.awf"}},
         {5, "that of an .awf file of 40 rows", {"truncate", "lossy.awg", "o", "--rate", "1"}},
         {5, "marovia decompress", {"measure", "in.pgm", "ok.awf"}},
         {5, "PNG", {"compress", "image.awg", "o"}},
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
