#include <cmath>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "marovia/codec.h"

#include "tests/cli/tool_process.h"
#include "tests/support/test_images.h"

namespace marovia::test {
namespace {

using Words = std::vector<std::string>;
using Json = nlohmann::json;

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
  const std::pair<Words, std::string> codings[] = {
      {{"--method", "wdr", "--coding", "binary"}, "awb"},
      {{"--method", "wdr"}, "awa"},
      {{"--coding", "binary"}, "awd"},
      {{"--method", "aswdr2"}, "awc"},
      {{}, "awf"}};
  for (const auto& [coding, kind] : codings) {
    for (const char* wavelet : {"9/7", "5/3", "2+2,2"}) {
      Words words = {"compress", "in.pgm",    "out",      "-f",    "--wavelet", wavelet,
                     "--levels", "2",         "--rate",   "1.5",   "--share",   "0.7",
                     "--region", "9,9,30,40", "--verify", "--pad", "auto"};
      words.insert(words.end(), coding.begin(), coding.end());
      Done(words);
      const Json info = Json::parse(Done({"info", "out." + kind, "--json"}));
      EXPECT_EQ(info["kind"], kind);
      EXPECT_EQ(info["wavelet"], wavelet);
      EXPECT_EQ(info["levels"], 2);
      EXPECT_EQ(info["rows"], 60);
      EXPECT_EQ(info["columns"], 83);
      Done({"decompress", "out." + kind, "out.pgm", "-f"});
      EXPECT_GT(PsnrAgainstSource("out.pgm"), 30) << kind << " " << wavelet;
    }
  }
}

TEST_F(Tool, KeepsEveryPixelOfALosslessImageOfAnySize) {
  for (const auto& [rows, cols] : {std::pair{1, 1}, {2, 9}, {3, 5}, {17, 33}, {60, 83}}) {
    const std::string source = PgmText(NamedImage("lcgnoise", rows, cols));
    for (const char* wavelet : {"5/3", "2+2,2"}) {
      const std::string file =
          Done({"compress", "-", "-", "--lossless", "--verify", "--wavelet", wavelet}, source);
      EXPECT_EQ(Done({"decompress", "-", "-", "--format", "awg"}, file), source) << rows << wavelet;
    }
  }
}

TEST_F(Tool, PassesImagesAndFilesThroughStandardStreams) {
  Done({"compress", "in.pgm", "out.awf"});
  EXPECT_EQ(Done({"compress", "-", "-"}, folder_.Read("in.pgm")), folder_.Read("out.awf"));
  Done({"decompress", "out.awf", "out.bmp"});
  EXPECT_EQ(Done({"decompress", "-", "-", "--format", "awf,bmp"}, folder_.Read("out.awf")),
            folder_.Read("out.bmp"));
  EXPECT_EQ(Done({"info", "-", "--format", "awf"}, folder_.Read("out.awf")),
            Done({"info", "out.awf"}));
}

TEST_F(Tool, DecodesATruncatedFileAsTheLongOneAtThatRate) {
  for (const std::string kind : {"awb", "awa", "awd", "awf"}) {
    const Words method = {"--method", kind == "awb" || kind == "awa" ? "wdr" : "aswdr"};
    const Words coding = {"--coding", kind == "awb" || kind == "awd" ? "binary" : "arithmetic"};
    Done({"compress", "in.pgm", "long", "--rate", "2", method[0], method[1], coding[0], coding[1]});
    for (const char* rate : {"0.2", "0.71", "1.3"}) {
      const Words shorter = {"truncate", "long." + kind, "short", "-f", "--rate", rate};
      EXPECT_EQ(folder_.Run(shorter).err, "");
      EXPECT_LT(folder_.Read("short." + kind).size(), folder_.Read("long." + kind).size());
      EXPECT_EQ(Done({"decompress", "short." + kind, "-"}),
                Done({"decompress", "long." + kind, "-", "--rate", rate}))
          << kind << " " << rate;
    }
  }
}

TEST_F(Tool, TurnsALosslessMasterIntoLossyFilesOfAnyRate) {
  Done({"compress", "in.pgm", "master", "--lossless"});
  double before = 0;
  for (const char* rate : {"0.1", "0.3", "0.9", "2"}) {
    Done({"truncate", "master.awg", "web", "-f", "--rate", rate});
    Done({"decompress", "web.awf", "web.pgm", "-f"});
    const double psnr = PsnrAgainstSource("web.pgm");
    EXPECT_GT(psnr, before) << rate;
    before = psnr;
  }
}

TEST_F(Tool, NeverExceedsTheBytesAskedFor) {
  Done({"compress", "in.pgm", "master", "--lossless"});
  for (const int bytes : {40, 100, 333, 1000, 2500}) {
    const std::string most = std::to_string(bytes);
    for (const std::string kind : {"awb", "awa", "awd", "awf"}) {
      Done({"compress", "in.pgm", "out", "-f", "--bytes", most,  //
            "--method", kind < "awc" ? "wdr" : "aswdr",          //
            "--coding", kind == "awb" || kind == "awd" ? "binary" : "arithmetic"});
      EXPECT_LE(folder_.Read("out." + kind).size(), bytes) << kind;
      EXPECT_GT(folder_.Read("out." + kind).size(), bytes * 0.8) << kind;
    }
    Done({"truncate", "master.awg", "cut", "-f", "--bytes", most});
    EXPECT_LE(folder_.Read("cut.awf").size(), bytes);
    EXPECT_EQ(folder_.Run({"decompress", "cut.awf", "cut.pgm", "-f"}).status, 0);
  }
}

TEST_F(Tool, SpendsTheBitsOfARegionInIt) {
  // Large, since what a region takes in reaches some way beyond it at every level.
  folder_.Write("in.pgm", PgmText(NamedImage("lcgnoise", 256, 256)));
  const Words measure = {"measure", "in.pgm", "out.pgm", "--region", "100,100,139,149", "--json"};
  Done({"compress", "in.pgm", "out", "--levels", "3"});
  Done({"decompress", "out.awf", "out.pgm"});
  const Json even = Json::parse(Done(measure));
  Done({"compress", "in.pgm", "out", "--levels", "3", "--region", "139,149,100,100", "-f"});
  Done({"decompress", "out.awf", "out.pgm", "-f"});
  EXPECT_GT(Json::parse(Done(measure))["psnr"], even["psnr"].get<double>() + 3);
}

TEST_F(Tool, ReportsItsPassesInTheWordsOfTheForm) {
  const ToolResult compressed =
      folder_.Run({"compress", "in.pgm", "out", "--rate", "1", "-v", "--json"});
  const Json passes = Json::parse(compressed.out)["passes"];
  const std::string first = compressed.err.substr(0, compressed.err.find("Pass  2"));
  const Json& pass = passes[0];
  EXPECT_TRUE(first.starts_with("Pass  1.  Threshold = ")) << first;
  EXPECT_NE(first.find("\nNumber of significant values encoded:  " + std::string(" ") +
                       std::to_string(pass["significant"].get<int>()) + "\n"),
            std::string::npos);
  EXPECT_NE(first.find("\nBit rate:   0."), std::string::npos);
  EXPECT_EQ(first.find('\r'), std::string::npos);
  const auto lines = std::ranges::count(compressed.err, '\n');
  EXPECT_EQ(lines, 3 * static_cast<int>(passes.size()) + 2);

  const ToolResult back = folder_.Run({"decompress", "out.awf", "out.pgm", "-v"});
  EXPECT_NE(back.err.find("Number of significant values decoded:  "), std::string::npos);
  EXPECT_TRUE(back.err.ends_with("Image decompressed.\n"));
}

TEST_F(Tool, MeasuresInTheWordsOfTheForm) {
  folder_.Write("black.pgm", "P2 2 2 255 0 0 0 0");
  folder_.Write("dot.pgm", "P2 2 2 255 0 0 0 4");
  EXPECT_EQ(Done({"measure", "black.pgm", "dot.pgm"}),
            "Sup-norm error:  4\nRoot Mean Square Error:  2\nPSNR error:  42.1102\n");
  EXPECT_EQ(Done({"measure", "black.pgm", "-", "--region", "1,1,0,1"}, folder_.Read("dot.pgm")),
            "ROI Sup-norm error:  4\nROI Mean Square Error:  8\nROI PSNR error:  39.0999\n");
  EXPECT_EQ(Done({"measure", "dot.pgm", "dot.pgm"}),
            "Sup-norm error:  0\nRoot Mean Square Error:  0\nPSNR error:  identical\n");
  EXPECT_TRUE(Json::parse(Done({"measure", "dot.pgm", "dot.pgm", "--json"}))["psnr"].is_null());
}

TEST_F(Tool, SaysWhatItChangedAndOtherwiseNothing) {
  EXPECT_EQ(folder_.Run({"compress", "in.pgm", "out"}).err, "");
  const std::pair<Words, std::string> cases[] = {
      {{"compress", "in.pgm", "out", "-f", "--levels", "9"}, "9 levels asked for, 4 used"},
      {{"compress", "in.pgm", "odd", "--pad", "never", "--lossless"}, "does not come back"},
      {{"decompress", "out.awf", "out.pgm", "--rate", "3"}, "made with 0.5"},
      {{"truncate", "out.awf", "same", "--rate", "3"}, "stays as it is"}};
  for (Words words : {cases[0].first, cases[1].first, cases[2].first, cases[3].first}) {
    const auto& part =
        std::ranges::find(cases, words, &std::pair<Words, std::string>::first)->second;
    const ToolResult loud = folder_.Run(words);
    EXPECT_EQ(loud.status, 0);
    EXPECT_NE(loud.err.find(part), std::string::npos) << loud.err;
    EXPECT_EQ(std::ranges::count(loud.err, '\n'), 1) << loud.err;
    words.insert(words.end(), {"-q", "-f"});
    EXPECT_EQ(folder_.Run(words).err, "");
  }
}

TEST_F(Tool, HelpsWhoKnowsNothing) {
  EXPECT_NE(Done({}).find("compress photo.pgm photo.awf"), std::string::npos);
  for (const char* command : {"compress", "decompress", "measure", "info", "truncate", "curve",
                              "difference", "thumbnail"})
    EXPECT_NE(Done({command, "--help"}).find("Examples:"), std::string::npos) << command;
  EXPECT_EQ(Done({"--version"}), "marovia 0.1.0\n");
}

}  // namespace
}  // namespace marovia::test
