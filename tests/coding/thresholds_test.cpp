#include "passes/run.h"
#include "tests/support/testing.h"

namespace marovia {
namespace {

using enum WaveletKind;

// With 2^n itself the exponent must be above n: no decoder could know that it was passed over.
TEST(FirstThreshold, LiesAboveEveryMagnitude) {
  for (int n = -3; n < 24; ++n) {
    const float power = std::ldexp(1.0F, n);
    for (const float most : {std::nextafter(power, 0.0F), power, std::nextafter(power, 1e9F)}) {
      const std::array coefficients = {0.0F, most / 3, -most, most / 2};
      const int exponent = std::max(0, most < power ? n : n + 1);
      EXPECT_EQ(GetThreshold(coefficients, kDaub97), exponent) << most;
      EXPECT_EQ(GetThreshold(coefficients, kInteger53), exponent) << most;
    }
  }
  EXPECT_EQ(GetThreshold(std::array{0.0F}, kDaub97), 0);
  EXPECT_EQ(GetThreshold(std::array{0.0F}, kInteger22), 1);
}

}  // namespace
}  // namespace marovia
