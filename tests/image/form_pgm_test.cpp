#include "image/form_pgm.h"

#include <gtest/gtest.h>

#include "tests/image/image_files.h"

namespace marovia {
namespace {

Image Read(std::string_view file) {
  return ReadFormPgm(BytesOf(file));
}

std::string TextOf(const Image& image) {
  return std::to_string(image.Rows()) + "x" + std::to_string(image.Cols()) + " " +
         std::string(image.Samples().begin(), image.Samples().end());
}

TEST(FormPgm, TakesFieldsOfFiveBytesAtMost) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"P5\n3 2\n255\nabcdefg", "2x3 abcdef"},
      // The width "1MB" would be 1024, and only that: "2MB" is 2, a height of "1MB" is 1.
      {"P5\n2MB 1MB\n255\nab", "1x2 ab"},
      // Any byte may follow P5, any maximum or none may be given.
      {"P5x2 1\n\nab", "1x2 ab"},
      {"P5\n2 1\n65535\nab", "1x2 \na"},
      // The blank behind a width of five digits goes to the height.
      {"P5\n00002 1\n255\nab", "1x2 ab"},
      {"P5\n00002 0001\n255\nab", "1x2 25"},
      // The line feed behind a height of five digits is the whole field of the maximum.
      {"P5\n2 00001\n255\nab", "1x2 25"},
      {"P5\n2.5 1.6\n255\nabcd", "2x2 abcd"}};
  for (const auto& [file, image] : cases) EXPECT_EQ(TextOf(Read(file)), image) << file;
  EXPECT_EQ(Read("P5\n1MB 1\n255\n" + std::string(1024, 'x')).Cols(), 1024);
}

TEST(FormPgm, WritesTheRowsFirstSoThatSizesComeBackExchanged) {
  Image wide(2, 3, 'x');
  wide(0, 2) = 'y';
  EXPECT_EQ(WriteFormPgm(wide), BytesOf("P5\n2 3\n255\nxxyxxx"));
  EXPECT_EQ(TextOf(ReadFormPgm(WriteFormPgm(wide))), "3x2 xxyxxx");
  EXPECT_EQ(ReadFormPgm(FileBytes("grey_raw.pgm")), ReadImage(FileBytes("grey_raw.pgm")).image);
}

TEST(FormPgm, SaysWhatCouldOnlyBeGarbage) {
  const std::tuple<std::string_view, Errc, std::string_view> cases[] = {
      {"P5", Errc::kMalformed, "does not begin with P5"},
      {"P2\n1 1\n255\n0 ", Errc::kMalformed, "does not begin with P5"},
      {"P5\n# by hand\n2 1\n255\nab", Errc::kMalformed, "0 columns"},
      {"P5\n2 -1\n255\nab", Errc::kMalformed, "2 columns and -1 rows"},
      {"P5\n2 1\n255\na", Errc::kMalformed, "need 2 bytes, but 1 are"},
      {"P5\n2 1", Errc::kMalformed, "within its header"},
      {"P5\n9999 9999\n255\n", Errc::kLimit, "9999 rows"},
      {"P5\n32768 1\n255\nab", Errc::kOverflow, "32768"},
      {"P5\n1E999 1\n255\nab", Errc::kOverflow, "too large"}};
  for (const auto& [file, code, part] : cases) {
    EXPECT_EQ(CodeOf([file = file] { Read(file); }, part), code) << file;
  }
}

}  // namespace
}  // namespace marovia
