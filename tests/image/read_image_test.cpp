// Files that other programs made, against the samples that they give for them; the grammar of
// Netpbm, its writer, and what is refused.
#include "tests/support/testing.h"

namespace marovia::test {
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
      const Bytes file = SampleFile(name);
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

TEST(ReadImage, SaysWhatIsWrong) {
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
      {"P5 99999999999999999999999 1 255 A", Errc::kMalformed, "exceeds 1000000000000000"},
      {"", Errc::kMalformed, "empty"},
      {"GIF89a", Errc::kUnsupported, "a GIF image; PBM, PGM, PPM, PAM and BMP are read"},
      {"RIFFxxxxWEBPVP8 ", Errc::kUnsupported, "a WebP image"},
      {"RIFFxxxxWAVE", Errc::kMalformed, "no image that is known"},
      {"P", Errc::kMalformed, "begins with P"},
      {"PK\3\4", Errc::kUnsupported, "a zip archive"},
      {"P1 3 1 0 2 1", Errc::kMalformed, "byte 50"},
      {"P4 9 2 xyz", Errc::kMalformed, "need 4 bytes, but 3 are"},
      {"P7 332\n", Errc::kUnsupported, "a thumbnail"},
      {"P7\nWIDTH 1\nHEIGHT 1\nMAXVAL 9\nENDHDR\n", Errc::kMalformed, "does not tell its DEPTH"},
      {"P7\nWIDTH 1\nHEIGHT 1\nDEPTH 4\nMAXVAL 9\nTUPLTYPE CMYK\nENDHDR\n", Errc::kUnsupported,
       "of the type CMYK"},
      {"P7\nWIDTH 1\n", Errc::kMalformed, "no end of its header"}};
  for (const auto& [file, code, part] : cases)
    EXPECT_EQ(CodeOf([&, text = file] { ReadImage(BytesOf(text)); }, part), code) << file;
  // The bytes must be there before anything is allocated.
  const std::tuple<std::string_view, Errc, std::string_view> unlimited[] = {
      {"P5 2147483647 33554432 255 A", Errc::kMalformed, "cut short"},
      {"P2 90000000 90000 9 1", Errc::kMalformed, "cut short"},
      {"P5 2147483647 2147483647 255 A", Errc::kLimit, "more than the limit"},
      {"P5 1 2147483648 255 A", Errc::kLimit, "at most 2147483647 of either"}};
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  for (const auto& [file, code, part] : unlimited)
    EXPECT_EQ(CodeOf([&, text = file] { ReadImage(BytesOf(text), kMost); }, part), code) << file;
}

TEST(WritePgm, PutsTheWidthFirst) {
  Image image(2, 3);
  for (std::size_t i = 0; i < 6; ++i) image.Samples()[i] = static_cast<std::uint8_t>('a' + i);
  EXPECT_EQ(WritePgm(image), BytesOf("P5\n3 2\n255\nabcdef"));
  EXPECT_EQ(ReadImage(WritePgm(image)).image, image);
}

}  // namespace
}  // namespace marovia::test
