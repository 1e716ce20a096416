#include "coding/thresholds.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace marovia {
namespace {

using enum WaveletKind;

int ExponentOf(float magnitude, WaveletKind wavelet) {
  const std::array coefficients = {0.0F, magnitude / 3, -magnitude, magnitude / 2};
  return GetThreshold(coefficients, wavelet);
}

// The rule by logarithms: rounded, raised where that fell below, and raised where the largest
// magnitude is the threshold itself.
int ExponentByLogarithm(float magnitude) {
  const double e = std::log(static_cast<double>(magnitude)) / std::log(2.0);
  double n = std::nearbyint(e);
  if (n < e) ++n;
  if (std::ldexp(1.0, static_cast<int>(n)) == magnitude) ++n;
  return std::max(0, static_cast<int>(n));
}

TEST(FirstThreshold, LiesAboveEveryMagnitude) {
  const struct {
    float magnitude;
    int exponent;
  } cases[] = {{8, 4},     {7.999F, 3}, {8.001F, 4}, {1, 1},   {0.75F, 0},    {0.5F, 0},
               {0.49F, 0}, {1e-30F, 0}, {255, 8},    {256, 9}, {32768.0F, 16}};
  for (const auto& c : cases) {
    for (const WaveletKind wavelet : {kDaub97, kInteger53}) {
      EXPECT_EQ(ExponentOf(c.magnitude, wavelet), c.exponent) << c.magnitude;
    }
  }
  EXPECT_EQ(ExponentOf(0, kDaub97), 0);
  EXPECT_EQ(ExponentOf(0, kInteger53), 1);
}

TEST(FirstThreshold, IsThatOfTheRoundedLogarithm) {
  for (float magnitude = 1; magnitude < 40000; ++magnitude) {
    ASSERT_EQ(ExponentOf(magnitude, kInteger53), ExponentByLogarithm(magnitude)) << magnitude;
  }
  for (int n = 0; n < 24; ++n) {
    const float power = std::ldexp(1.0F, n);
    for (const float magnitude : {std::nextafter(power, 0.0F), std::nextafter(power, 1e9F)}) {
      // A float next to a power of two is nearer to it than the logarithm in double can tell apart
      // only from below 1 on, where both give 0.
      ASSERT_EQ(ExponentOf(magnitude, kDaub97), ExponentByLogarithm(magnitude)) << magnitude;
    }
  }
}

TEST(LoopTest, StopsAtThresholdOneOrAfter32Passes) {
  EXPECT_TRUE(LoopTest(kInteger53, 1, 1));
  EXPECT_FALSE(LoopTest(kInteger22, 40, 0.5F));
  EXPECT_FALSE(LoopTest(kInteger22, 3, 2));
  EXPECT_FALSE(LoopTest(kDaub97, 31, 1));
  EXPECT_TRUE(LoopTest(kDaub97, 32, 1e-5F));
}

TEST(LastRefinement, PutsAValueInTheMiddleOfWhatIsOpen) {
  EXPECT_EQ(LastRefinement(8, 8, true), 12);
  EXPECT_EQ(LastRefinement(-8, 8, true), -12);
  EXPECT_EQ(LastRefinement(24, 8, false), 32);
  EXPECT_EQ(LastRefinement(-24, 8, false), -32);
}

}  // namespace
}  // namespace marovia
