// Image files that libraries read: made by other programs, damaged, and refused.
#include "pictures/orientation.h"
#include "pictures/picture.h"
#include "tests/support/testing.h"

namespace marovia::test {
namespace {

// Files that hold the samples of a plain one.
struct SameFiles {
  const char* names;
  const char* plain;
  const char* alteration;
};
constexpr const char* kColour = "colour turned to grey";
const SameFiles kFiles[] = {
    {"colour8.png colour_interlaced.png colour_lzw.tif colour_tiled.tif colour_planes.tif "
     "colour_plane_tiles.tif",
     "../images/colour.ppm", kColour},
    {"colour16.png", "../images/colour.ppm",
     "colour turned to grey, values scaled from 65535 to 255"},
    {"colour_alpha.png colour_alpha.tif", "../images/colour.ppm",
     "colour turned to grey, transparency dropped"},
    {"grey_interlaced.png", "../images/grey.pgm", ""},
    {"grey16.png grey16_big.tif", "../images/grey.pgm", "values scaled from 65535 to 255"},
    {"grey_transparent.png", "../images/grey.pgm", "transparency dropped"},
    {"grey4_interlaced.png", "../images/grey15.pgm", ""},
    {"palette4.png palette4.tif", "../images/palette.ppm", kColour},
    {"palette1.png", "../images/two.ppm", kColour},
    {"palette_transparent.png", "../images/palette.ppm",
     "colour turned to grey, transparency dropped"},
    {"bits.png bits_group4.tif", "../images/bits.pgm", ""},
    {"grey_turned.tif", "turned.pgm", ""},
    {"colour.jpg colour_progressive.jpg", "colour_jpg.ppm", kColour},
    {"grey.jpg", "grey_jpg.pgm", ""},
    {"grey_turned.jpg", "turned_jpg.pgm", ""}};

Bytes PictureBytes(const std::string& name) {
  return SampleFile("../pictures/" + name);
}

// Calls check(file, group) for all of them.
void ForFiles(auto check) {
  for (const SameFiles& group : kFiles) {
    std::istringstream names(group.names);
    for (std::string name; names >> name;) {
      SCOPED_TRACE(name);
      check(PictureBytes(name), group);
    }
  }
}

TEST(ReadPicture, GivesTheSamplesOfThePlainFileWithinThePixelLimit) {
  ForFiles([](const Bytes& file, const SameFiles& group) {
    const Picture picture = ReadPicture(file);
    EXPECT_EQ(picture.image, ReadImage(PictureBytes(group.plain)).image);
    EXPECT_EQ(picture.alteration, group.alteration);
    EXPECT_TRUE(picture.notices.empty()) << picture.notices.front();
    EXPECT_EQ(ReadPicture(file, {.maxPixels = 91}).image.Size(), 91U);
    EXPECT_EQ(CodeOf([&] { ReadPicture(file, {.maxPixels = 90}); }, "more than the limit of 90"),
              Errc::kLimit);
    EXPECT_EQ(CodeOf([&] { ReadPicture(file, {.page = 2}); }, "no page 2"), Errc::kInvalidArgument);
  });
}

// An Error or a picture, and nothing else: the library's assertions and the sanitizers watch.
void ReadDamaged(ByteView file) {
  try {
    const Picture picture = ReadPicture(file, {.maxPixels = 100'000});
    EXPECT_LE(picture.image.Size(), 100'000U);
    EXPECT_FALSE(picture.image.Empty());
  } catch (const Error& error) {
    EXPECT_TRUE(std::string_view(error.what()).ends_with('.')) << error.what();
  }
}

TEST(ReadPicture, SurvivesTruncationAndDamagedBytes) {
  ForFiles([](Bytes file, const SameFiles&) {
    for (std::size_t length = 0; length < file.size(); length += 3)
      ReadDamaged(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length)));
    for (std::uint8_t& byte : file) {
      const std::uint8_t original = byte;
      for (const int other : {0, 1, 0xFF, original ^ 4}) {
        byte = static_cast<std::uint8_t>(other);
        ReadDamaged(file);
      }
      byte = original;
    }
  });
}

TEST(ReadPicture, RefusesPicturesWithAPartMissing) {
  for (const char* name : {"colour8.png", "colour_lzw.tif", "colour.jpg", "grey_interlaced.png"}) {
    const Bytes file = PictureBytes(name);
    const Bytes start(file.begin(), file.end() - std::ssize(file) / 5);
    EXPECT_EQ(CodeOf([&] { ReadPicture(start); }, "library says"), Errc::kMalformed) << name;
  }
}

TEST(ReadPicture, RefusesWhatItCannotTurnToGrey) {
  const std::tuple<Bytes, std::string_view, Errc> cases[] = {
      {PictureBytes("inks.tif"), "the colours of inks", Errc::kUnsupported},
      {PictureBytes("floats.tif"), "no whole numbers", Errc::kUnsupported},
      {BytesOf("GIF89a"), "a GIF image; PBM, PGM, PPM, PAM, BMP, PNG, TIFF and JPEG are read",
       Errc::kUnsupported},
      {BytesOf("PF\n1 1\n-1\nabcd"), "floating-point samples", Errc::kUnsupported}};
  for (const auto& [file, part, code] : cases) {
    EXPECT_EQ(CodeOf([&, &bytes = file] { ReadPicture(bytes); }, part), code) << part;
  }
}

TEST(ReadPicture, TakesTheFirstPageOfSeveralAndSaysSo) {
  const Bytes file = PictureBytes("pages.tif");
  EXPECT_EQ(ReadPicture(file).notices, std::vector<std::string>{"page 1 of 2"});
  EXPECT_EQ(ReadPicture(file).image, ReadImage(SampleFile("grey.pgm")).image);
  EXPECT_EQ(ReadPicture(file, {.page = 2}).image, ReadImage(SampleFile("colour.ppm")).image);
  EXPECT_EQ(CodeOf([&] { ReadPicture(file, {.page = 3}); }, "no page 3; the file has 2"),
            Errc::kInvalidArgument);
}

// The corners of a picture of two rows and three columns, row by row, for each number.
TEST(Upright, PutsTheFirstRowAndColumnWhereTheNumberSays) {
  Image image(2, 3);
  std::ranges::copy(std::string_view("abcdef"), image.Samples().begin());
  const char* const expected[] = {"abcdef", "abcdef", "cbafed", "fedcba", "defabc",
                                  "adbecf", "daebfc", "fcebda", "cfbead", "abcdef"};
  for (int orientation = 0; orientation < 10; ++orientation) {
    const Image upright = Upright(image, orientation);
    EXPECT_EQ(std::string(upright.Samples().begin(), upright.Samples().end()),
              expected[orientation]);
    EXPECT_EQ(upright.Rows(), orientation >= 5 && orientation <= 8 ? 3 : 2);
  }
}

TEST(PictureWriters, WriteWhatComesBack) {
  for (const PictureWriter& writer : PictureWriters()) {
    for (const auto& [rows, cols] : {std::pair{1, 1}, {300, 217}, {2, 70000}}) {
      Image image(rows, cols);
      for (std::size_t i = 0; i < image.Size(); ++i)
        image.Samples()[i] = static_cast<std::uint8_t>(i * i / 7);
      const Picture back = ReadPicture(writer.write(image));
      EXPECT_EQ(back.image, image) << writer.extension << " of " << rows << " x " << cols;
      EXPECT_EQ(back.alteration, "");
    }
  }
}

}  // namespace
}  // namespace marovia::test
