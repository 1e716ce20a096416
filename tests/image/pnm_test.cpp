// The grammar of Netpbm headers and samples, and the writer.
#include <gtest/gtest.h>
#include <limits>

#include "tests/image/image_files.h"

namespace marovia {
namespace {

std::vector<int> SamplesOf(std::string_view file) {
  const LoadedImage loaded = ReadImage(BytesOf(file));
  EXPECT_EQ(loaded.image.Rows(), 1);
  return {loaded.image.Samples().begin(), loaded.image.Samples().end()};
}

using Samples = std::vector<int>;

TEST(Pnm, TakesCommentsAndWhiteSpaceAnywhereInTheHeader) {
  for (const char* file : {"P5 2 1 255\n#A", "P5\r\n2\t1\f\v255 #A", "P5#x\n#y\r2# 7\n1#\n 255 #A",
                           "P5 2 1 255#x\n#A", "P52 1 0255\r#A"}) {
    EXPECT_EQ(SamplesOf(file), (Samples{'#', 'A'})) << file;
  }
  EXPECT_EQ(SamplesOf("P2 3 1 255 1 #two 2\n\n 2\t003"), (Samples{1, 2, 3}));
}

TEST(Pnm, ScalesToTheNearestOf255) {
  EXPECT_EQ(SamplesOf("P2 2 1 1 0 1"), (Samples{0, 255}));
  EXPECT_EQ(SamplesOf("P2 4 1 4 0 1 2 3"), (Samples{0, 64, 128, 191}));
  EXPECT_EQ(SamplesOf("P2 4 1 65535 128 129 65406 65407"), (Samples{0, 1, 254, 255}));
  EXPECT_EQ(SamplesOf("P2 2 1 254 253 1"), (Samples{254, 1}));
  EXPECT_EQ(SamplesOf("P3 3 1 1 1 0 0 0 1 0 0 0 1"), (Samples{76, 150, 29}));
  EXPECT_EQ(SamplesOf({"P5 2 1 256\n\x01\x00\x00\x80", 15}), (Samples{255, 128}));
}

TEST(Pnm, KeepsAGreyWrittenAsColour) {
  for (int grey = 0; grey < 256; ++grey) {
    const std::string digits = " " + std::to_string(grey);
    const LoadedImage loaded = ReadImage(BytesOf("P3 1 1 255" + digits + digits + digits));
    EXPECT_EQ(loaded.image(0, 0), grey);
    EXPECT_EQ(loaded.alteration, "");
  }
  EXPECT_EQ(ReadImage(BytesOf("P3 1 1 1023 1023 0 0")).alteration,
            "colour turned to grey, values scaled from 1023 to 255");
}

TEST(Pnm, SaysWhatIsWrong) {
  const std::tuple<std::string_view, Errc, std::string_view> cases[] = {
      {"P5 # 2 1 255 AB", Errc::kMalformed, "ends where a number"},
      {"P5 2x1 255 AB", Errc::kMalformed, "byte 120"},
      {"P5 0 1 255 AB", Errc::kMalformed, "0 columns and 1 rows"},
      {"P5 2 1 0 AB", Errc::kMalformed, "maximum value of 0"},
      {"P5 2 1 65536 ABCD", Errc::kMalformed, "maximum value of 65536"},
      {"P5 2 1 255 A", Errc::kMalformed, "need 2 bytes, but 1 are"},
      {"P5 2 1 256 ABC", Errc::kMalformed, "need 4 bytes, but 3 are"},
      {"P6 2 1 255 ABCDE", Errc::kMalformed, "need 6 bytes, but 5 are"},
      {"P5 2 1 65 AB", Errc::kMalformed, "sample of 66, above its maximum value of 65"},
      {"P2 2 1 255 1 256", Errc::kMalformed, "sample of 256"},
      {"P2 2 1 255 1,2", Errc::kMalformed, "byte 44"},
      {"P5 8192 8193 255 A", Errc::kLimit, "8192 columns and 8193 rows"},
      {"P5 999999999999999 999999999999999 255 A", Errc::kLimit, "999999999999999 rows"},
      {"P5 99999999999999999999999 1 255 A", Errc::kMalformed, "exceeds 1000000000000000"}};
  for (const auto& [file, code, part] : cases) {
    EXPECT_EQ(CodeOf([&] { ReadImage(BytesOf(file)); }, part), code) << file;
  }
}

TEST(Pnm, NeedsTheBytesOfAHugeImageBeforeItIsAllocated) {
  const std::int64_t unlimited = std::numeric_limits<std::int64_t>::max();
  const std::tuple<const char*, Errc, std::string_view> cases[] = {
      {"P5 2147483647 33554432 255 A", Errc::kMalformed, "cut short"},
      {"P2 90000000 90000 9 1", Errc::kMalformed, "cut short"},
      {"P5 2147483647 2147483647 255 A", Errc::kLimit, "more than the limit"},
      {"P5 1 2147483648 255 A", Errc::kLimit, "at most 2147483647 of either"}};
  for (const auto& [file, code, part] : cases) {
    EXPECT_EQ(CodeOf([&, text = file] { ReadImage(BytesOf(text), unlimited); }, part), code);
  }
}

TEST(WritePgm, PutsTheWidthFirst) {
  Image image(2, 3);
  for (std::size_t i = 0; i < 6; ++i) image.Samples()[i] = static_cast<std::uint8_t>('a' + i);
  EXPECT_EQ(WritePgm(image), BytesOf("P5\n3 2\n255\nabcdef"));
  EXPECT_EQ(ReadImage(WritePgm(image)).image, image);
}

}  // namespace
}  // namespace marovia
