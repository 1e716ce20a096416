// Files that other programs made, against the samples that they give for them.
#include <gtest/gtest.h>

#include "tests/image/image_files.h"

namespace marovia {
namespace {

// A plain PGM or PPM without comments, read by nothing but the stream's own conversion.
struct Plain {
  explicit Plain(const std::string& name) {
    std::ifstream file(MAROVIA_TEST_DATA "/images/" + name);
    std::string magic;
    file >> magic >> cols >> rows >> maximum;
    colour = magic == "P3";
    for (int sample = 0; file >> sample;) samples.push_back(sample);
  }
  [[nodiscard]] double Grey(std::size_t pixel) const {
    const int* sample = &samples[pixel * (colour ? 3 : 1)];
    const double luma =
        colour ? 0.299 * sample[0] + 0.587 * sample[1] + 0.114 * sample[2] : sample[0];
    return luma * 255 / maximum;
  }

  int rows = 0;
  int cols = 0;
  int maximum = 0;
  bool colour = false;
  std::vector<int> samples;
};

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
    const Plain plain(item.plain);
    ASSERT_EQ(loaded.image.Rows(), plain.rows);
    ASSERT_EQ(loaded.image.Cols(), plain.cols);
    for (std::size_t i = 0; i < loaded.image.Size(); ++i) {
      ASSERT_NEAR(loaded.image.Samples()[i], plain.Grey(i), item.tolerance + 0.50001) << i;
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

TEST(ReadImage, SurvivesEveryTruncationAndEveryDamagedByte) {
  for (const ReadCase& item : kCases) {
    Bytes file = FileBytes(item.file);
    for (std::size_t length = 0; length < file.size(); ++length) {
      // A copy, so that a read past its end is seen.
      ReadDamaged(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length)));
    }
    for (std::uint8_t& byte : file) {
      const std::uint8_t original = byte;
      for (const int other : {0, 1, 2, 0x80, 0xFF, int{'9'}, int{'#'}, original ^ 4}) {
        byte = static_cast<std::uint8_t>(other);
        ReadDamaged(file);
      }
      byte = original;
    }
  }
}

TEST(ReadImage, RefusesWhatIsNoImage) {
  const std::tuple<std::string_view, std::string_view, Errc> cases[] = {
      {"", "empty", Errc::kMalformed},
      {"GIF89a", "neither a PGM nor a BMP", Errc::kMalformed},
      {"PK\3\4", "begins with P", Errc::kMalformed},
      {"P4 8 1 x", "P4", Errc::kUnsupported},
  };
  for (const auto& [text, part, code] : cases) {
    EXPECT_EQ(CodeOf([&, file = BytesOf(text)] { ReadImage(file); }, part), code) << text;
  }
}

TEST(ReadImage, HoldsEveryFileToThePixelLimit) {
  for (const ReadCase& item : kCases) {
    const Bytes file = FileBytes(item.file);
    EXPECT_EQ(ReadImage(file, 91).image.Size(), 91U) << item.file;
    EXPECT_EQ(CodeOf([&] { ReadImage(file, 90); }, "more than the limit of 90"), Errc::kLimit);
  }
}

}  // namespace
}  // namespace marovia
