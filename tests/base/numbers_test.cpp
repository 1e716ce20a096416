#include <clocale>

#include "base/checked.h"
#include "base/number_text.h"
#include "tests/support/testing.h"

namespace marovia {
namespace {

using test::CodeOf;

TEST(Rounding, TakesTheEvenOfTwoEquallyNear) {
  const double cases[][2] = {
      {0.5, 0},   {1.5, 2}, {2.5, 2},  {3.5, 4},   {-0.5, 0},           {-1.5, -2},
      {-2.5, -2}, {4.5, 4}, {2.51, 3}, {-3.4, -3}, {1e15 + 1, 1e15 + 1}};
  for (const auto& [value, rounded] : cases) EXPECT_EQ(RoundHalfEven(value), rounded) << value;
}

TEST(Rounding, FailsWhereTheResultLeavesItsType) {
  EXPECT_EQ(ToInt16(32767.4), 32767);
  EXPECT_EQ(ToInt16(-32768.5), -32768);
  EXPECT_EQ(CodeOf([] { ToInt16(32767.5); }), Errc::kOverflow);
  EXPECT_EQ(CodeOf([] { ToByte(-1); }), Errc::kOverflow);
  EXPECT_EQ(CodeOf([] { ToInt32(2147483647.5); }), Errc::kOverflow);
  EXPECT_EQ(CodeOf([] { ToInt32(std::numeric_limits<double>::quiet_NaN()); }), Errc::kOverflow);
  EXPECT_EQ(CheckedMul32(65536, 32767), 2147418112);
  EXPECT_EQ(CodeOf([] { CheckedMul32(65536, 32768); }), Errc::kOverflow);
}

TEST(NumberText, HasTheDigitsOfItsTypeAndABlankForTheSign) {
  const std::pair<double, std::string_view> doubles[] = {
      {1, " 1"}, {-3, "-3"}, {1.0 / 3, " 0.333333333333333"}, {-0.25, "-0.25"}};
  for (const auto& [value, text] : doubles) EXPECT_EQ(NumberText(value), text);
  const std::pair<float, std::string_view> floats[] = {{0.1F, " 0.1"},
                                                       {48.130804F, " 48.1308"},
                                                       {2147483648.0F, " 2.147484E+09"},
                                                       {0.00000011920929F, " 1.192093E-07"}};
  for (const auto& [value, text] : floats) EXPECT_EQ(NumberText(value), text);
  EXPECT_EQ(TrimmedNumberText(0.01F), "0.01");
}

TEST(LeadingNumber, IsTheLongestLeadingPartThatReadsAsANumber) {
  const std::pair<const char*, double> cases[] = {
      {"0.25", 0.25}, {"0.25abc", 0.25}, {"0,25", 0}, {"", 0},       {"abc", 0}, {"  4", 4},
      {"+3.5", 3.5},  {"-2", -2},        {".9", 0.9}, {"5.", 5},     {".", 0},   {"inf", 0},
      {"nan", 0},     {"1e", 1},         {"1e+", 1},  {"1E2x", 100}, {"--1", 0}, {"0x10", 0},
      {"1e-999", 0},  {"0.0", 0},        {"1 2", 1},  {"-.5e1", -5}};
  for (const auto& [text, value] : cases) EXPECT_EQ(LeadingNumber(text), value) << text;
  EXPECT_THROW(LeadingNumber("1e999"), Error);
}

TEST(NumberText, IsBlindToTheLocale) {
  for (const char* locale : {"de_DE.UTF-8", "C.UTF-8"}) {
    std::setlocale(LC_ALL, locale);
    EXPECT_EQ(NumberText(0.5), " 0.5");
    EXPECT_EQ(LeadingNumber("0.5"), 0.5);
  }
  std::setlocale(LC_ALL, "C");
}

}  // namespace
}  // namespace marovia
