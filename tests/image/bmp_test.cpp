// Headers and run-length codes that files of other programs do not show, and the writer.

#include "tests/support/testing.h"

namespace marovia::test {
namespace {

constexpr std::int64_t kUnlimited = std::numeric_limits<std::int64_t>::max();

// Field positions.
constexpr std::size_t kPixelsAt = 10;
constexpr std::size_t kInfoSize = 14;
constexpr std::size_t kWidth = 18;
constexpr std::size_t kHeight = 22;
constexpr std::size_t kBits = 28;
constexpr std::size_t kCompression = 30;
constexpr std::size_t kColours = 46;

Bytes With(Bytes file, std::size_t at, std::uint32_t value, std::size_t bytes = 4) {
  for (; bytes > 0; --bytes, value >>= 8) file[at++] = static_cast<std::uint8_t>(value);
  return file;
}

// The sizes, depth and compression, then 3 colours (0, 100 and a blue), then the pixels.
Bytes Bmp(std::uint32_t cols, std::uint32_t rows, std::uint32_t bits, std::uint32_t compression,
          const Bytes& pixels) {
  Bytes file(54);
  file[0] = 'B';
  file[1] = 'M';
  file = With(With(With(file, kPixelsAt, 66), kInfoSize, 40), kWidth, cols);
  file = With(With(With(file, kHeight, rows), kBits, bits, 2), kCompression, compression);
  file = With(file, kColours, 3);
  const Bytes palette = {0, 0, 0, 0, 100, 100, 100, 0, 200, 0, 0, 0};
  file.insert(file.end(), palette.begin(), palette.end());
  file.insert(file.end(), pixels.begin(), pixels.end());
  return file;
}

Image RunsOf(const Bytes& code, std::uint32_t bits = 8) {
  return ReadImage(Bmp(4, 2, bits, bits == 8 ? 1 : 2, code)).image;
}

std::string TextOf(const Image& image) {
  std::string text;
  for (int row = 0; row < image.Rows(); ++row) {
    for (const std::uint8_t grey : image.Row(row))
      text += grey == 0 ? '.' : grey == 100 ? 'g' : 'b';
    text += '\n';
  }
  return text;
}

TEST(BmpHeader, SaysWhatIsWrong) {
  const Bytes good = SampleFile("palette8.bmp");
  const std::tuple<Bytes, Errc, std::string_view> cases[] = {
      {Bytes(good.begin(), good.begin() + 17), Errc::kMalformed, "takes 18 bytes; 17 are there"},
      {Bytes(good.begin(), good.begin() + 53), Errc::kMalformed, "takes 54 bytes; 53 are there"},
      {With(good, kInfoSize, 60), Errc::kUnsupported, "information header of 60 bytes"},
      {With(SampleFile("palette8_os2.bmp"), kCompression, 3), Errc::kUnsupported,
       "compression 3 of OS/2"},
      {With(good, kBits, 7, 2), Errc::kUnsupported, "7 bits a pixel"},
      {With(good, kCompression, 2), Errc::kMalformed, "compression 2 with 8 bits"},
      {With(good, kWidth, 0), Errc::kMalformed, "0 columns and 7 rows"},
      {With(good, kHeight, 0x80000000), Errc::kLimit, "2147483648 rows"},
      {With(good, kHeight, 8), Errc::kMalformed, "need 125 bytes, but 112 are"},
      {With(good, kColours, 2), Errc::kMalformed, "but a palette of 2"},
      {With(SampleFile("colour32_masks.bmp"), 54, 0xF0F), Errc::kMalformed, "mask of 3855"},
      {With(SampleFile("colour565.bmp"), 58, 0x1E000), Errc::kMalformed, "mask of 122880"},
      {With(SampleFile("colour32_masks.bmp"), kPixelsAt, 54), Errc::kMalformed, "end at 66"},
      // Needs the bytes before anything is allocated.
      {With(With(SampleFile("colour32.bmp"), kWidth, 0x2000000), kHeight, 0x7FFFFFFF),
       Errc::kMalformed, "cut short"}};
  for (const auto& [file, code, part] : cases)
    EXPECT_EQ(CodeOf([&, &bytes = file] { ReadImage(bytes, kUnlimited); }, part), code) << part;
}

TEST(BmpHeader, IsReadLeniently) {
  const Bytes good = SampleFile("palette8.bmp");
  const Image image = ReadImage(good).image;
  EXPECT_EQ(ReadImage(With(good, 2, 1)).image, image) << "a wrong file size";
  EXPECT_EQ(ReadImage(With(good, 34, 0xFFFFFFFF)).image, image) << "a wrong size of the pixels";
  EXPECT_EQ(ReadImage(With(good, kColours, 1000)).image, image) << "too many colours";
  const Bytes unpadded(good.begin(), good.end() - 3);
  EXPECT_EQ(ReadImage(unpadded).image, image) << "no padding behind the last row";
  EXPECT_THROW(ReadImage(Bytes(good.begin(), good.end() - 4)), Error);
}

TEST(BmpColour, ReadsFiveBitsWithoutMasksAndNotesMasksWiderThanAByte) {
  const LoadedImage five = ReadImage(Bmp(2, 1, 16, 0, {0xFF, 0xFF, 0x10, 0x42}));
  EXPECT_EQ(five.image(0, 0), 255);
  EXPECT_EQ(five.image(0, 1), 132) << "16 of 31 in each component, 131.6";
  EXPECT_EQ(five.alteration, "");

  Bytes ten = Bmp(1, 1, 32, 3, {0xFF, 0xFF, 0xFF, 0xFF});
  ten = With(With(With(ten, 54, 0x3FF00000), 58, 0xFFC00), 62, 0x3FF);
  EXPECT_EQ(ReadImage(ten).image(0, 0), 255);
  EXPECT_EQ(ReadImage(ten).alteration, "values scaled from 1023 to 255");
}

TEST(BmpColour, NotesTransparencyThatIsTherePixelByPixel) {
  const auto alteration = [](std::uint32_t info, std::uint8_t first, std::uint8_t second) {
    Bytes file = Bmp(2, 1, 32, 0, {});
    file.resize(14 + info);
    if (info > 66) file = With(file, 66, 0xFF000000);
    const Bytes pixels = {7, 7, 7, first, 9, 9, 9, second};
    file.insert(file.end(), pixels.begin(), pixels.end());
    return ReadImage(With(With(file, kInfoSize, info), kPixelsAt, 14 + info)).alteration;
  };
  EXPECT_EQ(alteration(40, 0, 0), "") << "a byte that nobody filled";
  EXPECT_EQ(alteration(40, 255, 255), "");
  EXPECT_EQ(alteration(40, 255, 254), "transparency dropped");
  EXPECT_EQ(alteration(108, 255, 255), "");
  EXPECT_EQ(alteration(108, 0, 0), "transparency dropped") << "the header says what it is";
}

TEST(BmpRuns, GoUpFromTheBottomAndLeaveColourZeroWhereTheyJump) {
  const std::pair<Bytes, std::string_view> cases[] = {
      {{0, 3, 1, 2, 1, 9, 0, 0, 1, 2, 0, 1}, "b...\ngbg.\n"},
      // The padding of a row may be coded.
      {{3, 1, 2, 2, 0, 0, 255, 1, 0, 1}, "gggg\ngggb\n"},
      {{2, 1, 0, 3, 2, 2, 1, 0, 9, 1, 0, 0, 1, 2, 0, 1}, "b...\nggbb\n"},
      // So may what lies beyond the image.
      {{0, 0, 0, 0, 1, 1, 0, 1}, "....\n....\n"},
      {{0, 2, 5, 0, 1, 1, 0, 0, 1, 2, 0, 2, 0, 255, 1, 1}, "b...\n....\n"},
      // The end code may be missing where the rows are full.
      {{4, 1, 0, 0, 4, 2}, "bbbb\ngggg\n"},
      {{4, 1, 0, 0, 4, 2, 0, 0}, "bbbb\ngggg\n"}};
  for (const auto& [code, image] : cases) EXPECT_EQ(TextOf(RunsOf(code)), image);
  EXPECT_EQ(TextOf(RunsOf({3, 0x12, 0, 0, 0, 3, 0x21, 0x20, 0, 1}, 4)), "bgb.\ngbg.\n");
}

TEST(BmpRuns, SayWhereTheyEndTooEarly) {
  const std::pair<Bytes, std::string_view> cases[] = {
      {{0, 4, 1, 1, 1}, "ends in row 0 of 2"},
      {{4, 1, 0, 0, 3, 1}, "ends in row 1 of 2"},
      {{}, "ends in row 0 of 2"},
      {{4, 3, 0, 1}, "colour 3, but a palette of 3"}};
  for (const auto& [code, part] : cases) {
    EXPECT_EQ(CodeOf([&, &bytes = code] { RunsOf(bytes); }, part), Errc::kMalformed) << part;
  }
}

TEST(WriteBmp, GivesAGreyFileOfPaddedRowsFromTheBottom) {
  for (int cols = 1; cols <= 9; ++cols) {
    Image image(64, cols);
    for (std::size_t i = 0; i < image.Size(); ++i) {
      image.Samples()[i] = static_cast<std::uint8_t>(i);
    }
    const Bytes file = WriteBmp(image);
    EXPECT_EQ(file.size(), static_cast<std::size_t>(1078 + 64 * ((cols + 3) / 4 * 4)));
    EXPECT_EQ(file[2] + 256 * file[3], static_cast<int>(file.size() % 65536));
    EXPECT_EQ(file[1078], image(63, 0));
    EXPECT_EQ(ReadImage(file).image, image);
    EXPECT_EQ(ReadImage(file).alteration, "");
  }
}

}  // namespace
}  // namespace marovia::test
