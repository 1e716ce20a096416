#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <pty.h>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

#include "marovia/codec.h"
#include "marovia/version.h"

#include "tests/cli/tool_process.h"
#include "tests/support/test_images.h"

namespace marovia::test {
namespace {

using Words = std::vector<std::string>;
using Json = nlohmann::json;

std::size_t LongestLine(const std::string& text) {
  std::istringstream lines(text);
  std::size_t longest = 0;
  for (std::string line; std::getline(lines, line);) longest = std::max(longest, line.size());
  return longest;
}

class Tool : public ::testing::Test {
 protected:
  void SetUp() override { folder_.Write("in.pgm", PgmText(NamedImage("blobs", 60, 83))); }

  // A run that must end well; its standard output.
  std::string Done(const Words& words, const std::string& input = "") const {
    const ToolResult result = folder_.Run(words, input);
    EXPECT_EQ(result.status, 0) << ::testing::PrintToString(words) << result.err;
    return result.out;
  }

  [[nodiscard]] double PsnrAgainstSource(const std::string& file) const {
    const Json json = Json::parse(Done({"measure", "in.pgm", file, "--json"}));
    return json["psnr"].is_null() ? INFINITY : json["psnr"].get<double>();
  }

  ScratchFolder folder_;
};

TEST_F(Tool, TakesEveryOptionOfTheCoders) {
  for (const char* wavelet : {"9/7", "5/3", "2+2,2"}) {
    Done({"compress", "in.pgm", "out.awa", "-f", "--wavelet", wavelet, "--levels", "2", "--rate",
          "1.5", "--share", "0.7", "--region", "9,9,30,40", "--verify", "--pad", "auto"});
    const Json info = Json::parse(Done({"info", "out.awa", "--json"}));
    EXPECT_EQ(info["wavelet"], wavelet);
    EXPECT_EQ(info["levels"], 2);
    EXPECT_EQ(info["rows"], 60);
    EXPECT_EQ(info["columns"], 83);
    Done({"decompress", "out.awa", "out.pgm", "-f"});
    EXPECT_GT(PsnrAgainstSource("out.pgm"), 30) << wavelet;
  }
}

TEST_F(Tool, PassesImagesAndFilesThroughStandardStreams) {
  const std::string source = folder_.Read("in.pgm");
  const std::string lossless = Done({"compress", "-", "-", "--lossless", "--verify"}, source);
  EXPECT_EQ(Done({"decompress", "-", "-", "--format", "awg"}, lossless), source);
  Done({"compress", "in.pgm", "out.awf"});
  EXPECT_EQ(Done({"compress", "-", "-"}, source), folder_.Read("out.awf"));
  Done({"decompress", "out.awf", "out.bmp"});
  EXPECT_EQ(Done({"decompress", "-", "-", "--format", "awf,bmp"}, folder_.Read("out.awf")),
            folder_.Read("out.bmp"));
  EXPECT_EQ(Done({"info", "-", "--format", "awf"}, folder_.Read("out.awf")),
            Done({"info", "out.awf"}));
}

TEST_F(Tool, ReportsItsPassesInTheWordsOfTheForm) {
  const ToolResult compressed =
      folder_.Run({"compress", "in.pgm", "out", "--rate", "1", "-v", "--json"});
  const Json passes = Json::parse(compressed.out)["passes"];
  EXPECT_TRUE(compressed.err.starts_with("Pass  1.  Threshold = ")) << compressed.err;
  EXPECT_NE(compressed.err.find("\nNumber of significant values encoded:   " +
                                std::to_string(passes[0]["significant"].get<int>()) + "\n"),
            std::string::npos);
  EXPECT_EQ(compressed.err.find('\r'), std::string::npos);
  const auto lines = std::ranges::count(compressed.err, '\n');
  EXPECT_EQ(lines, 3 * static_cast<int>(passes.size()) + 2);

  const ToolResult back = folder_.Run({"decompress", "out.awf", "out.pgm", "-v"});
  EXPECT_NE(back.err.find("Number of significant values decoded:  "), std::string::npos);
  EXPECT_TRUE(back.err.ends_with("Image decompressed.\n"));
}

TEST_F(Tool, MeasuresInTheWordsOfTheForm) {
  folder_.Write("black.pgm", "P2 2 2 255 0 0 0 0");
  folder_.Write("dot.pgm", "P2 2 2 255 0 0 0 4");
  EXPECT_EQ(Done({"measure", "black.pgm", "-", "--region", "1,1,0,1"}, folder_.Read("dot.pgm")),
            "ROI Sup-norm error:  4\nROI Mean Square Error:  8\nROI PSNR error:  39.0999\n");
  EXPECT_EQ(Done({"measure", "dot.pgm", "dot.pgm"}),
            "Sup-norm error:  0\nRoot Mean Square Error:  0\nPSNR error:  identical\n");
}

TEST_F(Tool, SaysWhatItChangedAndOtherwiseNothing) {
  EXPECT_EQ(folder_.Run({"compress", "in.pgm", "out"}).err, "");
  const std::pair<Words, std::string> cases[] = {
      {{"compress", "in.pgm", "out", "-f", "--levels", "9"}, "9 levels asked for, 4 used"},
      {{"compress", "in.pgm", "odd", "--pad", "never", "--lossless"}, "does not come back"},
      {{"decompress", "out.awf", "out.pgm", "--rate", "3"}, "made with 0.5"},
      {{"truncate", "out.awf", "same", "--rate", "3"}, "stays as it is"}};
  for (auto [words, part] : cases) {
    const ToolResult loud = folder_.Run(words);
    EXPECT_NE(loud.err.find(part), std::string::npos) << loud.err;
    EXPECT_EQ(std::ranges::count(loud.err, '\n'), 1) << loud.err;
    words.insert(words.end(), {"-q", "-f"});
    const ToolResult quiet = folder_.Run(words);
    EXPECT_EQ(quiet.err, "") << quiet.status << loud.status;
  }
}

TEST_F(Tool, TakesTheCoderOfTheNameWhereNoOptionChoosesOne) {
  const std::pair<Words, std::string> cases[] = {{{"a.awb"}, "a.awb"},
                                                 {{"a.AWA"}, "a.AWA"},
                                                 {{"a.awd", "--rate", "1"}, "a.awd"},
                                                 {{"a.awf"}, "a.awf"},
                                                 {{"a.awg"}, "a.awg"},
                                                 {{"a.awh"}, "a.awh"},
                                                 {{"b", "--method", "context"}, "b.awh"},
                                                 {{"b", "--method", "wdr"}, "b.awa"},
                                                 {{"b", "--coding", "binary"}, "b.awd"},
                                                 {{"b"}, "b.awf"},
                                                 {{"b", "--lossless"}, "b.awg"}};
  for (const auto& [words, file] : cases) {
    Words all = {"compress", "in.pgm", "--json"};
    all.insert(all.end(), words.begin(), words.end());
    const Json json = Json::parse(Done(all));
    EXPECT_EQ(json["output"], file);
    EXPECT_EQ(Json::parse(Done({"info", file, "--json"}))["kind"], json["kind"]);
    EXPECT_EQ(json["lossless"], json["kind"] == "awg");
  }
}

// Whatever the name, and however short.
TEST_F(Tool, KnowsAContextFileByItsFirstBytes) {
  Done({"compress", "in.pgm", "m.awh", "--lossless", "--wavelet", "best", "--verify"});
  Done({"decompress", "m.awh", "back.pgm"});
  EXPECT_EQ(folder_.Read("back.pgm"), folder_.Read("in.pgm"));
  Done({"truncate", "m.awh", "short.awh", "--bytes", "400"});
  EXPECT_EQ(folder_.Read("short.awh"), folder_.Read("m.awh").substr(0, 400));
  folder_.Write("short.awf", folder_.Read("short.awh"));
  EXPECT_EQ(Done({"info", "short.awf"}), Done({"info", "-"}, folder_.Read("short.awh")));
  Done({"decompress", "short.awf", "short.pgm"});
  Done({"thumbnail", "short.awf", "short.png"});
  EXPECT_GT(PsnrAgainstSource("short.pgm"), 25);
  const ToolResult more = folder_.Run({"decompress", "short.awf", "-", "--rate", "2", "-q"});
  EXPECT_EQ(more.status, 3);  // bits that were asked for are missing
  EXPECT_EQ(more.out, folder_.Read("short.pgm"));
}

TEST_F(Tool, RecordsWhatReadingChanged) {
  folder_.Write("a.ppm", "P3 1 1 1023 9 0 0");
  folder_.Write("b.pgm", "P2 1 1 255 9");
  const std::string change = "colour turned to grey, values scaled from 1023 to 255";
  for (const Words& words :
       {Words{"compress", "a.ppm", "o", "-q", "--json"}, {"curve", "a.ppm", "-q", "--json"}})
    EXPECT_EQ(Json::parse(Done(words))["alteration"], change);
  for (const Words& words : {Words{"measure", "a.ppm", "b.pgm", "-q", "--json"},
                             {"difference", "a.ppm", "b.pgm", "o.pgm", "-q", "--json"}}) {
    EXPECT_EQ(Json::parse(Done(words))["sourceAlteration"], change);
    EXPECT_TRUE(
        Json::parse(Done({"measure", "a.ppm", "b.pgm", "-q", "--json"}))["reconstructionAlteration"]
            .is_null());
  }
}

TEST_F(Tool, HelpsWhoKnowsNothing) {
  const std::string help = Done({"help"});
  EXPECT_NE(help.find("compress photo.pgm photo.awf"), std::string::npos);
  const ToolResult alone = folder_.Run({});
  EXPECT_EQ(alone.status, 1);
  EXPECT_EQ(alone.out, help);
  const ToolResult dashes = folder_.Run({"--"});
  EXPECT_EQ(dashes.status, 2);
  EXPECT_NE(dashes.err.find("\nUsage: marovia COMMAND"), std::string::npos) << dashes.err;
  for (const char* command : {"compress", "decompress", "measure", "info", "truncate", "curve",
                              "difference", "thumbnail"}) {
    const std::string text = Done({command, "--help"});
    EXPECT_NE(text.find("Examples:"), std::string::npos) << command;
    EXPECT_EQ(Done({"help", command}), text);
    EXPECT_LE(LongestLine(text), 80U) << command;
  }
  EXPECT_EQ(Done({"-V"}), "marovia " + std::string(kVersion) + "\n");
}

TEST_F(Tool, KeepsItsHelpToTheWidthOfTheTerminal) {
  for (const std::size_t width : {50U, 90U}) {
    winsize size{};
    size.ws_col = static_cast<std::uint16_t>(width);
    int terminal = -1;
    int end = -1;
    std::array<char, 256> name{};
    ASSERT_EQ(::openpty(&terminal, &end, name.data(), nullptr, &size), 0);
    EXPECT_EQ(folder_.RunInto(name.data(), {"help", "info"}).status, 0);
    std::string text(8192, ' ');
    text.resize(static_cast<std::size_t>(::read(terminal, text.data(), text.size())));
    std::erase(text, '\r');
    EXPECT_LE(LongestLine(text), width) << text;
    EXPECT_GT(LongestLine(text), width - 15) << text;
    ::close(terminal);
    ::close(end);
  }
}

}  // namespace
}  // namespace marovia::test
