#include "marovia/version.h"

#include "tests/cli/tool_process.h"

namespace marovia::test {
namespace {

std::size_t LongestLine(const std::string& text) {
  std::istringstream lines(text);
  std::size_t longest = 0;
  for (std::string line; std::getline(lines, line);) longest = std::max(longest, line.size());
  return longest;
}

class Tool : public ToolTest {
 protected:
  void SetUp() override { folder_.Write("in.pgm", PgmText(NamedImage("blobs", 60, 83))); }
};

TEST_F(Tool, TakesEveryOptionOfTheCoders) {
  for (const std::string wavelet : {"9/7", "5/3", "2+2,2"}) {
    Done(
        "compress in.pgm out.awa -f --levels 2 --rate 1.5 --share 0.7 --region 9,9,30,40 --verify "
        "--pad auto --wavelet " +
        wavelet);
    const Json info = Record("info out.awa");
    EXPECT_EQ(info["wavelet"], wavelet);
    for (const auto& [field, value] : {std::pair{"levels", 2}, {"rows", 60}, {"columns", 83}})
      EXPECT_EQ(info[field], value);
    Done("decompress out.awa out.pgm -f");
    EXPECT_GT(Record("measure in.pgm out.pgm")["psnr"], 30) << wavelet;
  }
}

TEST_F(Tool, PassesImagesAndFilesThroughStandardStreams) {
  const std::string source = folder_.Read("in.pgm");
  const std::string lossless = Done("compress - - --lossless --verify", source);
  EXPECT_EQ(Done("decompress - -", lossless), source);
  Done("compress in.pgm out.awf");
  const std::string lossy = folder_.Read("out.awf");
  EXPECT_EQ(Done("compress - - --method aswdr", source), lossy);
  Done("decompress out.awf out.bmp");
  EXPECT_EQ(Done("decompress - - --format awf,bmp", lossy), folder_.Read("out.bmp"));
  EXPECT_EQ(Done("info - --format awf", lossy), Done("info out.awf"));
}

TEST_F(Tool, ReportsAndMeasuresInTheWordsOfTheForm) {
  const ToolResult compressed = Run("compress in.pgm out.awf --rate 1 -v --json");
  const Json passes = Json::parse(compressed.out)["passes"];
  EXPECT_TRUE(compressed.err.starts_with("Pass  1.  Threshold = ")) << compressed.err;
  EXPECT_NE(compressed.err.find("\nNumber of significant values encoded:   " +
                                passes[0]["significant"].dump() + "\n"),
            std::string::npos);
  EXPECT_EQ(compressed.err.find('\r'), std::string::npos);
  EXPECT_EQ(LinesIn(compressed.err), 3 * static_cast<int>(passes.size()) + 2);
  const ToolResult back = Run("decompress out.awf out.pgm -v");
  EXPECT_NE(back.err.find("Number of significant values decoded:  "), std::string::npos);
  EXPECT_TRUE(back.err.ends_with("Image decompressed.\n"));

  folder_.Write("black.pgm", "P2 2 2 255 0 0 0 0");
  folder_.Write("dot.pgm", "P2 2 2 255 0 0 0 4");
  EXPECT_EQ(Done("measure black.pgm - --region 1,1,0,1", folder_.Read("dot.pgm")),
            "ROI Sup-norm error:  4\nROI Mean Square Error:  8\nROI PSNR error:  39.0999\n");
  EXPECT_EQ(Done("measure dot.pgm dot.pgm"),
            "Sup-norm error:  0\nRoot Mean Square Error:  0\nPSNR error:  identical\n");
}

TEST_F(Tool, SaysWhatItChangedAndOtherwiseNothing) {
  EXPECT_EQ(Run("compress in.pgm out.awf").err, "");
  const std::pair<std::string, std::string> cases[] = {
      {"compress in.pgm out.awf -f --levels 9", "9 levels asked for, 4 used"},
      {"compress in.pgm odd.awg --pad never --lossless", "does not come back"},
      {"decompress out.awf out.pgm --rate 3", "made with 0.5"},
      {"truncate out.awf same --rate 3", "stays as it is"}};
  for (const auto& [words, part] : cases) {
    const ToolResult loud = Run(words);
    EXPECT_NE(loud.err.find(part), std::string::npos) << loud.err;
    EXPECT_EQ(LinesIn(loud.err), 1) << loud.err;
    EXPECT_EQ(Run(words + " -q" + (words.ends_with("9") ? "" : " -f")).err, "");
  }
}

TEST_F(Tool, TakesTheCoderOfTheNameWhereNoOptionChoosesOne) {
  std::vector<std::pair<std::string, std::string>> cases = {{"a.AWA", "a.AWA"},
                                                            {"b --method wdr", "b.awa"},
                                                            {"b --coding binary", "b.awd"},
                                                            {"b --method aswdr2", "b.awc"},
                                                            {"f --method context", "f.awh"},
                                                            {"b", "b.awh"},
                                                            {"c --coding arithmetic", "c.awh"},
                                                            {"d --lossless", "d.awh"},
                                                            {"e.awg --lossless", "e.awg"}};
  for (const FileKind kind : AllKinds()) {
    const std::string name = "a." + std::string(Extension(kind));
    cases.emplace_back(name, name);
  }
  for (const auto& [words, file] : cases) {
    const Json json = Record("compress in.pgm " + words);
    EXPECT_EQ(json["output"], file);
    EXPECT_EQ(Record("info " + file)["kind"], json["kind"]);
    EXPECT_EQ(json["lossless"], words.ends_with("--lossless") || json["kind"] == "awg");
  }
}

// Whatever the name, and however short.
TEST_F(Tool, KnowsAContextFileByItsFirstBytes) {
  Done("compress in.pgm m.awh --lossless --wavelet best --verify");
  Done("decompress m.awh back.pgm");
  EXPECT_EQ(folder_.Read("back.pgm"), folder_.Read("in.pgm"));
  Done("truncate m.awh short.awh --bytes 400");
  EXPECT_EQ(folder_.Read("short.awh"), folder_.Read("m.awh").substr(0, 400));
  folder_.Write("short.awf", folder_.Read("short.awh"));
  EXPECT_EQ(Done("info short.awf"), Done("info -", folder_.Read("short.awh")));
  Done("decompress short.awf short.pgm");
  Done("thumbnail short.awf short.png");
  EXPECT_GT(Record("measure in.pgm short.pgm")["psnr"], 25);
  const ToolResult more = Run("decompress short.awf - --rate 2 -q");
  EXPECT_EQ(more.status, 3);  // bits that were asked for are missing
  EXPECT_EQ(more.out, folder_.Read("short.pgm"));
}

TEST_F(Tool, RecordsWhatReadingChanged) {
  folder_.Write("a.ppm", "P3 1 1 1023 9 0 0");
  folder_.Write("b.pgm", "P2 1 1 255 9");
  for (const char* words :
       {"compress a.ppm o", "curve a.ppm", "measure a.ppm b.pgm", "difference a.ppm b.pgm o.pgm"}) {
    const Json json = Record(words + std::string(" -q"));
    const bool two = json.contains("sourceAlteration");
    EXPECT_EQ(json[two ? "sourceAlteration" : "alteration"],
              "colour turned to grey, values scaled from 1023 to 255");
    EXPECT_TRUE(!two || json["reconstructionAlteration"].is_null());
  }
}

TEST_F(Tool, HelpsWhoKnowsNothing) {
  const std::string help = Done("help");
  EXPECT_NE(help.find("compress photo.pgm photo.awh"), std::string::npos);
  const ToolResult alone = Run("");
  EXPECT_EQ(alone.status, 1);
  EXPECT_EQ(alone.out, help);
  const ToolResult dashes = Run("--");
  EXPECT_EQ(dashes.status, 2);
  EXPECT_NE(dashes.err.find("\nUsage: marovia COMMAND"), std::string::npos) << dashes.err;
  for (const std::string command : {"compress", "decompress", "measure", "info", "truncate",
                                    "curve", "difference", "thumbnail"}) {
    const std::string text = Done(command + " --help");
    EXPECT_NE(text.find("Examples:"), std::string::npos) << command;
    EXPECT_EQ(Done("help " + command), text);
    EXPECT_LE(LongestLine(text), 80U) << command;
  }
  EXPECT_EQ(Done("-V"), "marovia " + std::string(kVersion) + "\n");
}

}  // namespace
}  // namespace marovia::test
