#include "base/number_text.h"

#include <clocale>
#include <gtest/gtest.h>
#include <string>

#include "marovia/error.h"

namespace marovia {
namespace {

TEST(NumberText, HasTheDigitsOfItsTypeAndABlankForTheSign) {
  EXPECT_EQ(NumberText(1), " 1");
  EXPECT_EQ(NumberText(-3), "-3");
  EXPECT_EQ(NumberText(4096.0F), " 4096");
  EXPECT_EQ(NumberText(0.1F), " 0.1");
  EXPECT_EQ(NumberText(48.130804F), " 48.1308");
  EXPECT_EQ(NumberText(1.0 / 3), " 0.333333333333333");
  EXPECT_EQ(NumberText(-0.25), "-0.25");
  EXPECT_EQ(NumberText(2147483648.0F), " 2.147484E+09");
  EXPECT_EQ(NumberText(0.00000011920929F), " 1.192093E-07");
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
