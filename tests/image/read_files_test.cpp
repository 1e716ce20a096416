// Files that other programs made, against the samples that they give for them.
#include <cmath>
#include <gtest/gtest.h>

#include "image_files.h"

namespace marovia {
namespace {

double GreyOf(const Plain& plain, std::size_t pixel) {
  const bool colour = plain.samples.size() > static_cast<std::size_t>(plain.rows * plain.cols);
  const int* sample = &plain.samples[pixel * (colour ? 3 : 1)];
  const double luma =
      colour ? 0.299 * sample[0] + 0.587 * sample[1] + 0.114 * sample[2] : sample[0];
  return luma * 255 / plain.maximum;
}

struct ReadCase {
  const char* file;
  const char* plain;
  const char* alteration;
  int tolerance = 0;
};

constexpr const char* kColour = "colour turned to grey";

const ReadCase kCases[] = {
    {"colour24.bmp", "colour.ppm", kColour},
    {"colour24_core.bmp", "colour.ppm", kColour},
    {"colour24_topdown.bmp", "colour.ppm", kColour},
    {"colour24_v4.bmp", "colour.ppm", kColour},
    {"colour24_v5.bmp", "colour.ppm", kColour},
    {"colour32.bmp", "colour.ppm", kColour},
    {"colour32_masks.bmp", "colour.ppm", kColour},
    {"colour32_v5.bmp", "colour.ppm", kColour},
    // Five bits are spread over eight in more than one way.
    {"colour555.bmp", "colour555.ppm", kColour, 1},
    {"colour565.bmp", "colour565.ppm", kColour, 1},
    {"palette1.bmp", "two.ppm", kColour},
    {"palette4.bmp", "palette.ppm", kColour},
    {"palette4_core.bmp", "palette.ppm", kColour},
    {"palette8.bmp", "palette.ppm", kColour},
    {"palette_rle8.bmp", "palette.ppm", kColour},
    {"palette_rle8_jump.bmp", "palette_rle8_jump.ppm", kColour},
    {"palette_rle4.bmp", "palette_rle4.ppm", kColour},
    {"grey8.bmp", "grey.pgm", ""},
    {"grey24.bmp", "grey.pgm", ""},
    {"grey.pgm", "grey.pgm", ""},
    {"grey_raw.pgm", "grey.pgm", ""},
    {"grey_comment.pgm", "grey.pgm", ""},
    {"grey1023.pgm", "grey1023.pgm", "values scaled from 1023 to 255"},
    {"grey1023_raw.pgm", "grey1023.pgm", "values scaled from 1023 to 255"},
    {"grey65535_raw.pgm", "grey.pgm", "values scaled from 65535 to 255"},
    {"grey15_raw.pgm", "grey15.pgm", "values scaled from 15 to 255"},
    {"two_images.pgm", "grey15.pgm", "values scaled from 15 to 255"},
    {"colour.ppm", "colour.ppm", kColour},
    {"colour_raw.ppm", "colour.ppm", kColour},
};

TEST(ReadImage, GivesTheSamplesThatOtherProgramsGive) {
  for (const ReadCase& item : kCases) {
    SCOPED_TRACE(item.file);
    const LoadedImage loaded = ReadImage(FileBytes(item.file));
    const Plain plain = ReadPlain(item.plain);
    ASSERT_EQ(loaded.image.Rows(), plain.rows);
    ASSERT_EQ(loaded.image.Cols(), plain.cols);
    for (std::size_t i = 0; i < loaded.image.Size(); ++i) {
      ASSERT_NEAR(loaded.image.Samples()[i], GreyOf(plain, i), item.tolerance + 0.50001) << i;
    }
    EXPECT_EQ(loaded.alteration, item.alteration);
    const bool bmp = std::string_view(item.file).ends_with("bmp");
    EXPECT_EQ(loaded.format, bmp ? ImageFormat::kBmp : ImageFormat::kPgm);
  }
}

// Any damage gives an Error or an image, and nothing else: the library's assertions and the
// sanitizers watch.
void ReadDamaged(ByteView file) {
  try {
    const LoadedImage loaded = ReadImage(file, 100'000);
    EXPECT_LE(loaded.image.Size(), 100'000U);
    EXPECT_FALSE(loaded.image.Empty());
  } catch (const Error& error) {
    EXPECT_TRUE(std::string_view(error.what()).ends_with('.')) << error.what();
  }
}

TEST(ReadImage, SurvivesEveryTruncation) {
  for (const std::string& name : AllImageFiles()) {
    const Bytes file = FileBytes(name);
    for (std::size_t length = 0; length < file.size(); ++length) {
      // A copy, so that a read past its end is seen.
      ReadDamaged(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length)));
    }
  }
}

TEST(ReadImage, SurvivesEveryDamagedByte) {
  for (const std::string& name : AllImageFiles()) {
    Bytes file = FileBytes(name);
    for (std::uint8_t& byte : file) {
      const std::uint8_t original = byte;
      for (const int other :
           {0, 1, 2, 0x80, 0xFF, int{'9'}, int{'#'}, original ^ 4, original - 1}) {
        byte = static_cast<std::uint8_t>(other);
        ReadDamaged(file);
      }
      byte = original;
    }
  }
}

TEST(ReadImage, RefusesWhatIsNoImage) {
  const auto codeOf = [](std::string_view text, std::string_view part) {
    return CodeOf([&] { ReadImage(BytesOf(text)); }, part);
  };
  EXPECT_EQ(codeOf("", "empty"), Errc::kMalformed);
  EXPECT_EQ(codeOf("GIF89a", "a GIF image; PGM, PPM and BMP are read"), Errc::kUnsupported);
  EXPECT_EQ(codeOf("RIFFxxxxWEBPVP8 ", "a WebP image"), Errc::kUnsupported);
  EXPECT_EQ(codeOf("RIFFxxxxWAVE", "no image that is known"), Errc::kMalformed);
  EXPECT_EQ(codeOf("B", "no image that is known"), Errc::kMalformed);
  EXPECT_EQ(codeOf("P", "begins with P"), Errc::kMalformed);
  EXPECT_EQ(codeOf("PK\3\4", "a zip archive"), Errc::kUnsupported);
  EXPECT_EQ(codeOf("P4 8 1 x", "P4"), Errc::kUnsupported);
  EXPECT_EQ(codeOf("P7\nWIDTH 1", "P7"), Errc::kUnsupported);
}

TEST(ReadImage, HoldsEveryFileToThePixelLimit) {
  for (const std::string& name : AllImageFiles()) {
    const Bytes file = FileBytes(name);
    EXPECT_EQ(ReadImage(file, 91).image.Size(), 91U) << name;
    EXPECT_EQ(CodeOf([&] { ReadImage(file, 90); }, "more than the limit of 90"), Errc::kLimit);
    EXPECT_EQ(CodeOf([&] { ReadImage(file, 0); }, "13 columns and 7 rows"), Errc::kLimit);
  }
}

}  // namespace
}  // namespace marovia
