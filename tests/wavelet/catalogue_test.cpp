#include "wavelet/catalogue.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string_view>

namespace marovia {
namespace {

using enum WaveletKind;

TEST(LevelLimit, FollowsTheRoundedLogarithmOfTheSmallerSide) {
  const struct {
    int rows, cols;
    int daub, integer;
  } cases[] = {{512, 512, 7, 4}, {256, 512, 6, 4}, {512, 256, 6, 4}, {363, 363, 7, 4},
               {362, 362, 6, 4}, {64, 90, 4, 4},   {45, 45, 3, 3},   {46, 46, 4, 4},
               {11, 99, 1, 1},   {12, 99, 2, 2},   {6, 6, 1, 1},     {5, 5, 0, 0},
               {3, 8, 0, 0},     {2, 8, -1, -1},   {1, 1, -2, -2},   {32767, 32767, 13, 4}};
  for (const auto& c : cases) {
    EXPECT_EQ(LevelLimit(c.rows, c.cols, kDaub97), c.daub) << c.rows << " x " << c.cols;
    EXPECT_EQ(LevelLimit(c.rows, c.cols, kInteger53), c.integer) << c.rows << " x " << c.cols;
    EXPECT_EQ(LevelLimit(c.rows, c.cols, kInteger22), c.integer) << c.rows << " x " << c.cols;
  }
  for (int side = 1; side <= 32767; ++side) {
    const int limit = static_cast<int>(std::nearbyint(std::log(side) / std::log(2.0))) - 2;
    ASSERT_EQ(LevelLimit(side, 32767, kDaub97), limit) << side;
  }
}

TEST(SetNumberOfLevels, ReadsHoldsOrRefusesTheText) {
  constexpr std::string_view kPositive = "Number of levels must be a positive integer.";
  constexpr std::string_view kInvalid = "Invalid number of levels.";
  const struct {
    std::string_view text;
    int side;
    int levels;
    bool held;
    std::string_view message;
  } cases[] = {
      {"3", 512, 3, false, ""},
      {"3.5", 512, 4, false, ""},
      {"2.5", 512, 2, false, ""},
      {" 2 levels", 512, 2, false, ""},
      {"9", 512, 7, true, ""},
      {"7", 512, 7, false, ""},
      {"1", 5, 0, true, ""},
      {"1", 2, -1, true, ""},
      {"0.5", 512, -1, false, kPositive},
      {"-2", 512, -1, false, kPositive},
      {"", 512, -1, false, kPositive},
      {"two", 512, -1, false, kPositive},
      {"40000", 512, -1, false, kInvalid},
      {"1e400", 512, -1, false, kInvalid},
      {"32767", 512, 7, true, ""},
  };
  for (const auto& c : cases) {
    for (const auto rule : {SetNumberOfLevels, SetNumberOfLevelsLossless}) {
      const LevelChoice choice = rule(c.text, c.side, 600, kDaub97);
      EXPECT_EQ(choice.levels, c.levels) << c.text;
      EXPECT_EQ(choice.held, c.held) << c.text;
      EXPECT_EQ(choice.message, c.message) << c.text;
    }
  }
}

TEST(Wavelets, HaveNumbersLabelsAndSupports) {
  const struct {
    int number;
    std::string_view label;
    int support;
  } cases[] = {{1, "Daub 9/7", 5}, {2, "DD 5/3 Integer", 5}, {3, "DD 2+2,2 Integer", 6}};
  for (const auto& c : cases) {
    const auto wavelet = WaveletOfNumber(c.number);
    ASSERT_TRUE(wavelet);
    EXPECT_EQ(WaveletLabel(*wavelet), c.label);
    EXPECT_EQ(WaveletOfLabel(c.label), wavelet);
    EXPECT_EQ(SupportOfWavelet(*wavelet), c.support);
  }
  EXPECT_FALSE(WaveletOfNumber(0) || WaveletOfNumber(4) || WaveletOfLabel("daub 9/7"));
}

}  // namespace
}  // namespace marovia
