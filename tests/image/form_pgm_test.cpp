#include "image/form_pgm.h"

#include <gtest/gtest.h>

#include "image_files.h"

namespace marovia {
namespace {

Image Read(std::string_view file) {
  return ReadFormPgm(BytesOf(file));
}

Bytes SamplesOf(const Image& image) {
  return {image.Samples().begin(), image.Samples().end()};
}

TEST(FormPgm, ReadsTheFirstSizeAsTheWidth) {
  const Image image = Read("P5\n3 2\n255\nabcdefg");
  EXPECT_EQ(image.Rows(), 2);
  EXPECT_EQ(image.Cols(), 3);
  EXPECT_EQ(SamplesOf(image), BytesOf("abcdef"));
}

TEST(FormPgm, WritesTheRowsFirstSoThatSizesComeBackExchanged) {
  const Image square(256, 256, 7);
  const Bytes file = WriteFormPgm(square);
  EXPECT_EQ(file.size(), 15U + 65536U);
  EXPECT_EQ(Bytes(file.begin(), file.begin() + 15), BytesOf("P5\n256 256\n255\n"));
  EXPECT_EQ(ReadFormPgm(file), square);

  Image wide(2, 3);
  wide(0, 2) = 9;
  const Image back = ReadFormPgm(WriteFormPgm(wide));
  EXPECT_EQ(back.Rows(), 3);
  EXPECT_EQ(back.Cols(), 2);
  EXPECT_EQ(SamplesOf(back), SamplesOf(wide));
}

TEST(FormPgm, TakesFieldsOfFiveBytesAtMost) {
  // The width "1MB" is 1024, and only that: "2MB" is 2, a height of "1MB" is 1.
  EXPECT_EQ(Read("P5\n1MB 1\n255\n" + std::string(1024, 'x')).Cols(), 1024);
  EXPECT_EQ(Read("P5\n2MB 1MB\n255\nab").Size(), 2U);
  // Any byte may follow P5, any maximum or none may be given.
  EXPECT_EQ(Read("P5x2 1\n\nab").Size(), 2U);
  EXPECT_EQ(SamplesOf(Read("P5\n2 1\n65535ab")), BytesOf("ab"));
  EXPECT_EQ(SamplesOf(Read("P5\n2 1\n65535\nab")), BytesOf("\na"));
  // The blank behind a width of five digits goes to the height.
  EXPECT_EQ(SamplesOf(Read("P5\n00002 1\n255\nab")), BytesOf("ab"));
  EXPECT_EQ(SamplesOf(Read("P5\n00002 0001\n255\nab")), BytesOf("25"));
  // The line feed behind a height of five digits is the whole field of the maximum.
  EXPECT_EQ(SamplesOf(Read("P5\n2 00001\n255\nab")), BytesOf("25"));
}

TEST(FormPgm, RoundsALeadingNumberToSixteenBits) {
  EXPECT_EQ(Read("P5\n2.5 1.6\n255\nabcd").Rows(), 2);
  EXPECT_EQ(Read("P5\n2.5 1.6\n255\nabcd").Cols(), 2);
  EXPECT_EQ(Read("P5\n3x 1\n255\nabc").Cols(), 3);
  EXPECT_EQ(CodeOf([] { Read("P5\n32768 1\n255\nab"); }, "32768"), Errc::kOverflow);
  EXPECT_EQ(CodeOf([] { Read("P5\n1E999 1\n255\nab"); }, "too large"), Errc::kOverflow);
}

TEST(FormPgm, SaysWhatCouldOnlyBeGarbage) {
  const std::tuple<std::string_view, Errc, std::string_view> cases[] = {
      {"", Errc::kMalformed, "does not begin with P5"},
      {"P5", Errc::kMalformed, "does not begin with P5"},
      {"P2\n1 1\n255\n0 ", Errc::kMalformed, "does not begin with P5"},
      {"P5\n# by hand\n2 1\n255\nab", Errc::kMalformed, "0 columns"},
      {"P5\n2 -1\n255\nab", Errc::kMalformed, "2 columns and -1 rows"},
      {"P5\n2 1\n255\na", Errc::kMalformed, "need 2 bytes, but 1 are"},
      {"P5\n2", Errc::kMalformed, "within its header"},
      {"P5\n2 1", Errc::kMalformed, "within its header"},
      {"P5\n2 1\n25", Errc::kMalformed, "within its header"},
      {"P5\n9999 9999\n255\n", Errc::kLimit, "9999 rows"},
  };
  for (const auto& [file, code, part] : cases) {
    EXPECT_EQ(CodeOf([file = file] { Read(file); }, part), code) << file;
  }
}

TEST(FormPgm, AgreesWithTheGeneralReaderAndSurvivesDamage) {
  Bytes file = FileBytes("grey_raw.pgm");
  EXPECT_EQ(ReadFormPgm(file), ReadImage(file).image);
  const auto read = [](ByteView bytes) {
    try {
      EXPECT_FALSE(ReadFormPgm(bytes).Empty());
    } catch (const Error&) {
    }
  };
  for (std::size_t i = 0; i < file.size(); ++i) {
    read(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(i)));
    const std::uint8_t original = file[i];
    for (int byte = 0; byte < 256; ++byte) {
      file[i] = static_cast<std::uint8_t>(byte);
      read(file);
    }
    file[i] = original;
  }
}

}  // namespace
}  // namespace marovia
