// What curve, difference and thumbnail make.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>
#include <zlib.h>

#include "image/reduction.h"
#include "tests/cli/tool_process.h"
#include "tests/support/test_images.h"

namespace marovia::test {
namespace {

using Words = std::vector<std::string>;
using Json = nlohmann::json;

Image ReadBack(const std::string& text) {
  return ReadImage(Bytes(text.begin(), text.end())).image;
}

std::uint32_t BigEndian(const std::string& text, std::size_t at) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<std::uint8_t>(text[at + i]);
  return value;
}

// Reads a PNG of one IDAT chunk and rows that are filtered by the one above, checking what readers
// check.
Image ReadPng(const std::string& png) {
  EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1a\n");
  std::string packed;
  for (std::size_t at = 8; at < png.size();) {
    const std::uint32_t length = BigEndian(png, at);
    const std::string body = png.substr(at + 4, 4 + length);
    EXPECT_EQ(::crc32(0, reinterpret_cast<const Bytef*>(body.data()), length + 4),
              BigEndian(png, at + 8 + length));
    if (body.starts_with("IDAT")) packed = body.substr(4);
    at += 12 + length;
  }
  EXPECT_EQ(png.substr(24, 5), std::string("\x08\0\0\0\0", 5));  // 8-bit grey
  Image image(static_cast<int>(BigEndian(png, 20)), static_cast<int>(BigEndian(png, 16)));
  Bytes rows(image.Size() + static_cast<std::size_t>(image.Rows()));
  uLongf length = rows.size();
  EXPECT_EQ(::uncompress(rows.data(), &length, reinterpret_cast<const Bytef*>(packed.data()),
                         packed.size()),
            Z_OK);
  EXPECT_EQ(length, rows.size());
  std::size_t next = 0;
  for (int r = 0; r < image.Rows(); ++r) {
    EXPECT_EQ(rows[next++], 2);
    for (int c = 0; c < image.Cols(); ++c)
      image(r, c) = static_cast<std::uint8_t>(rows[next++] + (r > 0 ? image(r - 1, c) : 0));
  }
  return image;
}

class Pictures : public ::testing::Test {
 protected:
  std::string Done(const Words& words, const std::string& input = "") const {
    const ToolResult result = folder_.Run(words, input);
    EXPECT_EQ(result.status, 0) << ::testing::PrintToString(words) << result.err;
    return result.out;
  }

  ScratchFolder folder_;
};

TEST_F(Pictures, CurveHasTheNumbersThatSingleRunsGive) {
  folder_.Write("in.pgm", PgmText(NamedImage("blobs", 64, 80)));
  const Words curve = {"curve",   "in.pgm",     "a.svg",     "a.tsv",   "--json", "--coders",
                       "awf,awb", "--wavelets", "2+2,2,9/7", "--rates", "1,0.25"};
  const Json json = Json::parse(Done(curve));
  ASSERT_EQ(json["curves"].size(), 4U);
  for (const Json& one : json["curves"]) {
    ASSERT_EQ(one["points"].size(), 2U);
    for (const Json& point : one["points"]) {
      const bool best = one["kind"] == "awf";
      const std::string rate = point["bitsPerPixel"] == 1 ? "1" : "0.25";
      Done({"compress", "in.pgm", "o", "-f", "--rate", rate, "--wavelet", one["wavelet"],  //
            "--method", best ? "aswdr" : "wdr", "--coding", best ? "arithmetic" : "binary"});
      Done({"decompress", best ? "o.awf" : "o.awb", "o.pgm", "-f"});
      const Json measured = Json::parse(Done({"measure", "in.pgm", "o.pgm", "--json"}));
      EXPECT_NEAR(measured["psnr"].get<double>(), point["psnr"].get<double>(), 0.01) << one;
    }
  }
  const std::string table = folder_.Read("a.tsv");
  EXPECT_TRUE(table.starts_with("coder\twavelet\tbpp\tpsnr\nawf\t2+2,2\t0.25\t")) << table;
  EXPECT_EQ(std::ranges::count(table, '\n'), 9);
  const std::string svg = folder_.Read("a.svg");
  EXPECT_TRUE(svg.starts_with("<svg ") && svg.ends_with("</svg>\n"));
  EXPECT_NE(svg.find(">awb  9/7</text>"), std::string::npos);
}

TEST_F(Pictures, DifferenceIsMidGreyWhereImagesAgree) {
  folder_.Write("a.pgm", "P2 3 1 255 100 100 100");
  folder_.Write("b.pgm", "P2 3 1 255 100 103 0");
  const Image picture = ReadBack(Done({"difference", "a.pgm", "b.pgm", "-", "--gain", "2.5"}));
  EXPECT_EQ(picture(0, 0), 128);
  EXPECT_EQ(picture(0, 1), 136);
  EXPECT_EQ(picture(0, 2), 0);
}

TEST_F(Pictures, ThumbnailIsThePictureMadeSmaller) {
  for (const auto& [rows, cols] : {std::pair{300, 211}, {40, 1200}, {30, 20}}) {
    const Image image = NamedImage("blobs", rows, cols);
    folder_.Write("in.pgm", PgmText(image));
    for (const bool lossless : {false, true}) {
      Words words = {"compress", "in.pgm", "o", "-f"};
      const Words how = lossless ? Words{"--lossless"} : Words{"--rate", "6"};
      words.insert(words.end(), how.begin(), how.end());
      Done(words);
      const std::string file = lossless ? "o.awg" : "o.awf";
      const Image small = ReadPng(Done({"thumbnail", file, "-", "--size", "64"}));
      const Image expected = ReducedToFit(image, 64);
      ASSERT_TRUE(small.SameShape(expected)) << small.Rows() << " x " << small.Cols();
      int worst = 0;
      for (std::size_t i = 0; i < small.Size(); ++i)
        worst = std::max(worst, std::abs(small.Samples()[i] - expected.Samples()[i]));
      EXPECT_LE(worst, 6) << file << " of " << rows << " rows";
    }
  }
}

// The desktop puts a size and two files in place, the second of them there and empty.
TEST_F(Pictures, ThumbnailIsCalledByTheDesktopAsItsEntrySays) {
  std::ifstream entry(MAROVIA_ROOT "/packaging/marovia.thumbnailer");
  std::string line;
  while (std::getline(entry, line) && !line.starts_with("Exec=marovia ")) continue;
  std::istringstream rest(line.substr(line.find(' ')));
  Words words;
  for (std::string word; rest >> word;)
    words.push_back(word == "%s" ? "48" : word == "%i" ? "in.awf" : word == "%o" ? "out" : word);
  folder_.Write("in.pgm", PgmText(NamedImage("blobs", 96, 64)));
  folder_.Write("out", "");
  Done({"compress", "in.pgm", "in"});
  Done(words);
  EXPECT_TRUE(ReadPng(folder_.Read("out")).SameShape(Image(48, 32)));
}

}  // namespace
}  // namespace marovia::test
