#include "wavelet/catalogue.h"

#include "tests/support/testing.h"

namespace marovia {
namespace {

using enum WaveletKind;

TEST(LevelLimit, FollowsTheRoundedLogarithmOfTheSmallerSide) {
  EXPECT_EQ(LevelLimit(362, 512, kDaub97), 6);
  EXPECT_EQ(LevelLimit(512, 363, kDaub97), 7);
  for (int side = 1; side <= 32767; ++side) {
    const int limit = static_cast<int>(std::nearbyint(std::log(side) / std::log(2.0))) - 2;
    ASSERT_EQ(LevelLimit(side, 32767, kDaub97), limit) << side;
    ASSERT_EQ(LevelLimit(32767, side, kInteger53), std::min(limit, 4)) << side;
    ASSERT_EQ(LevelLimit(32767, side, kInteger22), std::min(limit, 4)) << side;
  }
}

TEST(SetNumberOfLevels, ReadsHoldsOrRefusesTheText) {
  constexpr std::string_view kPositive = "Number of levels must be a positive integer.";
  constexpr std::string_view kInvalid = "Invalid number of levels.";
  const std::tuple<std::string_view, int, LevelChoice> cases[] = {
      {"3.5", 512, {4, false, ""}},
      {"2.5", 512, {2, false, ""}},
      {" 2 levels", 512, {2, false, ""}},
      {"7", 512, {7, false, ""}},
      {"9", 512, {7, true, ""}},
      {"1", 5, {0, true, ""}},
      {"1", 2, {-1, true, ""}},
      {"0.5", 512, {-1, false, kPositive}},
      {"two", 512, {-1, false, kPositive}},
      {"40000", 512, {-1, false, kInvalid}},
      {"1e400", 512, {-1, false, kInvalid}}};
  for (const auto& [text, side, expected] : cases) {
    const LevelChoice choice = SetNumberOfLevels(text, side, 600, kDaub97);
    EXPECT_EQ(choice.levels, expected.levels) << text;
    EXPECT_EQ(choice.held, expected.held) << text;
    EXPECT_EQ(choice.message, expected.message) << text;
  }
}

TEST(Wavelets, AreFoundByTheirLabels) {
  for (const WaveletKind wavelet : kWaveletsAsListed) {
    EXPECT_EQ(WaveletOfLabel(WaveletLabel(wavelet)), wavelet);
  }
  EXPECT_FALSE(WaveletOfLabel("daub 9/7"));
}

}  // namespace
}  // namespace marovia
