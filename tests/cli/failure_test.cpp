#include "tests/cli/tool_process.h"
#include "tests/support/test_images.h"

namespace marovia::test {
namespace {

// What the line on standard error says, and the words that lead to it: a whole command line, or
// what stands behind "compress in.pgm".
struct Case {
  std::string said;
  std::string words;
};

class Failures : public ToolTest {
 protected:
  void SetUp() override {
    folder_.Write("in.pgm", PgmText(NamedImage("blobs", 40, 56)));
    Done({"compress", "in.pgm", "ok.awf"});
    Done({"compress", "in.pgm", "ok.awg", "--lossless"});
  }

  // Two quotes stand for an empty word.
  static Words WordsOf(const Case& one) {
    std::istringstream rest(one.words.starts_with("marovia ") ? one.words.substr(8)
                                                              : "compress in.pgm " + one.words);
    Words words;
    for (std::string word; rest >> word;) words.push_back(word == "''" ? "" : word);
    return words;
  }

  // Every case ends with that status and one line, writes nothing to standard output, and changes
  // no file.
  void AllEndWith(int status, const std::vector<Case>& cases) const {
    const auto before = folder_.Names();
    for (const Case& one : cases) {
      const ToolResult result = folder_.Run(WordsOf(one));
      const std::string what = one.words + ": " + result.err;
      EXPECT_EQ(result.status, status) << what;
      EXPECT_TRUE(result.err.starts_with("marovia: ")) << what;
      EXPECT_EQ(LinesIn(result.err), 1) << what;
      EXPECT_NE(result.err.find(one.said), std::string::npos) << what;
      EXPECT_EQ(result.out, "") << what;
      EXPECT_EQ(folder_.Names(), before) << what;
    }
  }
};

TEST_F(Failures, OfUsageEndWithTwo) {
  AllEndWith(2, {{"foo", "marovia foo"},
                 {"OUT", ""},
                 {"mean compress?", "marovia compres in.pgm o"},
                 {"mean truncate?", "marovia help trunctae"},
                 {"(see", "marovia xyzzy in.pgm"},
                 {"mean --rate or --ratio?", "o --rat 1"},
                 {"mean --lossless?", "o -losless"},
                 {"needs a value", "o --rate"},
                 {"only once", "o --rate 1 --rate 2"},
                 {"before the command", "marovia --json info ok.awf"},
                 {"one name too many", "marovia difference in.pgm in.pgm o.pgm o.bmp"},
                 {"OUT is an empty name", "''"},
                 {"excludes", "o --rate 1 --bytes 9"},
                 {"'inf'", "o --rate inf"},
                 {"'0'", "o --rate 0"},
                 {"'0,5'", "o --rate 0,5"},
                 {"5 bytes", "o --bytes 5"},
                 {"'1'", "o --region 0,0,9,9 --share 1"},
                 {"--region", "o --share 0.5"},
                 {"'1,2,3'", "o --region 1,2,3"},
                 {"row 40", "o --region 0,0,40,9"},
                 {"5/3", "o --lossless --wavelet 9/7"},
                 {"--method aswdr --coding arithmetic", "o --lossless --method wdr"},
                 {"or --method context", "o.awh --lossless --method wdr"},
                 {"always pad", "o.awh --pad never"},
                 {"15 bytes", "o.awh --bytes 15"},
                 {"written is .awh", "o.awf --method context"},
                 {"--coding binary only", "o --method aswdr2 --coding arithmetic"},
                 {"written is .awd", "o.awb --method aswdr"},
                 {"written is .awh", "o.awf --lossless"},
                 {"written is .awf", "o.awg --rate 1"},
                 {".bmp", "marovia decompress ok.awf o.gif"},
                 {"--bytes", "marovia truncate ok.awf o.awf"},
                 {"--format", "marovia info -"},
                 {"'xyz' is not awb, ", "marovia decompress - o.pgm --format xyz"},
                 {"--json", "- --json"},
                 {"one of the two", "marovia measure - -"},
                 {".svg", "marovia curve in.pgm o.png"},
                 {"--rates", "marovia curve in.pgm --rates 2:1"},
                 {"'awg'", "marovia curve in.pgm --coders awg"},
                 {"--gain", "marovia difference in.pgm in.pgm o.pgm --gain 0"},
                 {"4096", "marovia thumbnail ok.awf o.png --size 4097"},
                 {"has no name", "marovia compress - in.pgm --output-dir o"},
                 {"--output-dir", "a b"},
                 {"--output-dir", "o -j 2"},
                 {"share 3 of 2", "--output-dir o --shard 3/2"},
                 {"holds lines", "marovia compress --output-dir o --files0-from in.pgm"},
                 {"IN is required", "marovia compress --output-dir o"}});
}

TEST_F(Failures, OfReadingAndWritingEndWithFour) {
  std::filesystem::create_directory(folder_.Path("folder"));
  std::filesystem::create_directory(folder_.Path("folder.awf"));
  AllEndWith(4, {{"missing.pgm", "marovia compress missing.pgm o"},
                 {"folder", "marovia decompress folder.awf o.pgm"},
                 {"folder", "folder"},
                 {"folder", "folder.awf -f"},
                 {"nowhere/o.awh", "nowhere/o"},
                 {"ok.awf: already exists", "ok.awf"},
                 {"/dev/full", "/dev/full"},
                 {"in.pgm: already exists", "marovia decompress ok.awf in.pgm"}});
  for (const Words& words : {Words{"info", "ok.awf"}, {"decompress", "ok.awf", "-"}, {"--help"}}) {
    const ToolResult full = folder_.Run(words, "", "/dev/full");
    EXPECT_EQ(full.status, 4);
    EXPECT_NE(full.err.find("standard output"), std::string::npos) << full.err;
  }
}

TEST_F(Failures, OfForeignFilesEndWithFive) {
  const std::string good = folder_.Read("ok.awf");
  const std::pair<std::string, std::string> files[] = {
      {"empty.awf", ""},
      {"empty.pgm", ""},
      {"header.awf", good.substr(0, 13)},
      {"noise.awf", std::string(200, '\xff')},
      {"cut.pgm", folder_.Read("in.pgm").substr(0, 500)},
      {"deep.pgm", "P2 3 3 1023 0 1 2 3 4 5 6 7 1023"},
      {"image.awf", folder_.Read("in.pgm")},
      {"image.awg", std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\1\0\0\0\1\0", 24)},
      {"lossless.awf", folder_.Read("ok.awg")},
      {"lossy.awg", good}};
  for (const auto& [name, content] : files) folder_.Write(name, content);
  AllEndWith(5, {{"empty.awf", "marovia decompress empty.awf o.pgm"},
                 {"empty.pgm", "marovia compress empty.pgm o"},
                 {"13", "marovia decompress header.awf o.pgm"},
                 {"noise.awf", "marovia decompress noise.awf o.pgm"},
                 {"cut.pgm", "marovia compress cut.pgm o"},
                 {".pgm", "marovia info in.pgm"},
                 {"Netpbm", "marovia decompress image.awf o.pgm"},
                 {"PNG", "marovia thumbnail image.awg o.png"},
                 {"that of an .awg file of 40 rows", "marovia info lossless.awf"},
                 {"that of an .awf file of 40 rows", "marovia truncate lossy.awg o --rate 1"},
                 {"marovia decompress", "marovia measure in.pgm ok.awf"},
                 {"PNG", "marovia compress image.awg o"},
                 {"--convert", "marovia compress deep.pgm o --lossless"}});
  Done({"compress", "deep.pgm", "deep", "--lossless", "--convert"});
}

TEST_F(Failures, OfLimitsEndWithSixAndOfShapesWithOne) {
  std::string header = folder_.Read("ok.awf").substr(0, 14);
  for (const std::size_t side : {5, 7}) header.replace(side, 2, "\xff\x7f");
  folder_.Write("huge.awf", header);
  folder_.Write("huge.pgm", "P5 32767 32767 255\n");
  folder_.Write("long.pgm", std::string(2'000'000, ' '));
  folder_.Write("other.pgm", PgmText(NamedImage("blobs", 56, 40)));
  AllEndWith(6, {{"huge.awf", "marovia decompress huge.awf o.pgm"},
                 {"huge.pgm", "marovia compress huge.pgm o"},
                 {"2239", "o --max-pixels 2239"},
                 {"1000", "marovia compress long.pgm o --max-pixels 1000"}});
  AllEndWith(1, {{"other.pgm", "marovia measure in.pgm other.pgm"}});
  Done({"compress", "in.pgm", "o", "--max-pixels", "2240"});
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
  Done({"decompress", "cut.awf", "cut.pgm", "-f", "--rate", "0.1"});
}

}  // namespace
}  // namespace marovia::test
