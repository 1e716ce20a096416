// Files that other programs made, against the samples that they give for them.
#include <gtest/gtest.h>
#include <sstream>
#include <tuple>

#include "tests/image/image_files.h"

namespace marovia {
namespace {

// Files that hold the same samples, the first of them as plain text. Five bits are spread over
// eight in more than one way, so there another program may be off by 1.
struct SameFiles {
  const char* names;
  const char* alteration;
  int tolerance = 0;
};
constexpr const char* kColour = "colour turned to grey";
const SameFiles kFiles[] = {
    {"colour.ppm colour_raw.ppm colour.pam colour24.bmp colour24_core.bmp colour24_topdown.bmp "
     "colour24_v4.bmp colour24_v5.bmp colour32.bmp colour32_masks.bmp colour32_v5.bmp",
     kColour},
    {"colour555.ppm colour555.bmp", kColour, 1},
    {"colour565.ppm colour565.bmp", kColour, 1},
    {"two.ppm palette1.bmp", kColour},
    {"palette.ppm palette4.bmp palette4_core.bmp palette8.bmp palette8_os2.bmp "
     "palette8_os2_short.bmp palette_rle8.bmp",
     kColour},
    {"bits.pgm bits.pbm bits_raw.pbm", ""},
    {"colour_alpha.pam", "colour turned to grey, transparency dropped"},

    {"palette_rle8_jump.ppm palette_rle8_jump.bmp", kColour},
    {"palette_rle4.ppm palette_rle4.bmp", kColour},
    {"grey.pgm grey_raw.pgm grey_comment.pgm grey8.bmp grey24.bmp", ""},
    {"grey1023.pgm grey1023_raw.pgm", "values scaled from 1023 to 255"},
    {"grey15.pgm grey15_raw.pgm two_images.pgm", "values scaled from 15 to 255"}};

// Calls check(file, group, first file of the group) for all of them.
void ForFiles(auto check) {
  for (const SameFiles& group : kFiles) {
    std::istringstream names(group.names);
    Bytes first;
    for (std::string name; names >> name;) {
      SCOPED_TRACE(name);
      const Bytes file = FileBytes(name);
      if (first.empty()) first = file;
      check(file, group, first);
    }
  }
}

TEST(ReadImage, GivesTheSamplesThatOtherProgramsGiveWithinThePixelLimit) {
  ForFiles([](const Bytes& file, const SameFiles& group, const Bytes& first) {
    const LoadedImage loaded = ReadImage(file);
    const Image plain = ReadImage(first).image;
    ASSERT_TRUE(loaded.image.SameShape(plain));
    for (std::size_t i = 0; i < plain.Size(); ++i) {
      ASSERT_NEAR(loaded.image.Samples()[i], plain.Samples()[i], group.tolerance) << i;
    }
    EXPECT_EQ(loaded.alteration, group.alteration);
    EXPECT_EQ(loaded.format, file[0] == 'B' ? ImageFormat::kBmp : ImageFormat::kPgm);
    EXPECT_EQ(ReadImage(file, 91).image.Size(), 91U);
    EXPECT_EQ(CodeOf([&] { ReadImage(file, 90); }, "more than the limit of 90"), Errc::kLimit);
  });
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
  ForFiles([](Bytes file, const SameFiles&, const Bytes&) {
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
  });
}

TEST(ReadImage, RefusesWhatIsNoImage) {
  const std::tuple<std::string_view, std::string_view, Errc> cases[] = {
      {"", "empty", Errc::kMalformed},
      {"GIF89a", "a GIF image; PBM, PGM, PPM, PAM and BMP are read", Errc::kUnsupported},
      {"RIFFxxxxWEBPVP8 ", "a WebP image", Errc::kUnsupported},
      {"RIFFxxxxWAVE", "no image that is known", Errc::kMalformed},
      {"P", "begins with P", Errc::kMalformed},
      {"PK\3\4", "a zip archive", Errc::kUnsupported},
      {"P1 3 1 0 2 1", "byte 50", Errc::kMalformed},
      {"P4 9 2 xyz", "need 4 bytes, but 3 are", Errc::kMalformed},
      {"P7 332\n", "a thumbnail", Errc::kUnsupported},
      {"P7\nWIDTH 1\nHEIGHT 1\nMAXVAL 9\nENDHDR\n", "does not tell its DEPTH", Errc::kMalformed},
      {"P7\nWIDTH 1\nHEIGHT 1\nDEPTH 4\nMAXVAL 9\nTUPLTYPE CMYK\nENDHDR\n", "of the type CMYK",
       Errc::kUnsupported},
      {"P7\nWIDTH 1\n", "no end of its header", Errc::kMalformed}};
  for (const auto& [text, part, code] : cases) {
    EXPECT_EQ(CodeOf([&, file = BytesOf(text)] { ReadImage(file); }, part), code) << text;
  }
}

}  // namespace
}  // namespace marovia
