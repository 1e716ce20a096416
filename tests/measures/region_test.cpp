#include "measures/region.h"

#include <gtest/gtest.h>
#include <random>

#include "base/shift.h"
#include "tests/support/literal_coder.h"
#include "tests/support/literal_transform.h"
#include "tests/support/test_images.h"

namespace marovia {
namespace {

using test::RandomBelow;

TEST(RegionCoordinates, AreOrderedScaledRoundedAndHeldToTheImage) {
  const struct {
    PictureRectangle drawn;
    int rows, cols;
    float rowUnits, colUnits;
    Region region;
  } cases[] = {
      {{10, 20, 30, 40}, 256, 256, 1, 1, {10, 20, 30, 40}},
      {{30, 40, 10, 20}, 256, 256, 1, 1, {10, 20, 30, 40}},
      {{30, 20, 10, 40}, 256, 256, 1, 1, {10, 20, 30, 40}},
      {{7, 7, 7, 7}, 256, 256, 1, 1, {7, 7, 7, 7}},
      {{10, 20, 30, 40}, 512, 128, 1, 1, {20, 10, 60, 20}},
      {{1, 3, 5, 7}, 128, 128, 1, 1, {0, 2, 2, 4}},  // 0.5, 1.5, 2.5 and 3.5
      {{-5, -1, 300, 256}, 256, 256, 1, 1, {0, 0, 255, 255}},
      {{0, 0, 255, 255}, 100, 37, 1, 1, {0, 0, 99, 36}},
      {{150, 150, 300, 600}, 256, 256, 15, 15, {10, 10, 20, 40}},
      {{300, 300, 32767, 32767}, 256, 256, 15, 30, {20, 10, 255, 255}},
  };
  for (const auto& c : cases) {
    const Region region = GetROICoordinates(c.drawn, c.rows, c.cols, c.rowUnits, c.colUnits);
    EXPECT_EQ(region.row1, c.region.row1);
    EXPECT_EQ(region.col1, c.region.col1);
    EXPECT_EQ(region.row2, c.region.row2);
    EXPECT_EQ(region.col2, c.region.col2);
  }
}

TEST(RegionMask, IsThatOfThePlainProcedure) {
  std::mt19937 random(7);
  for (int round = 0; round < 300; ++round) {
    const Image image(6 + RandomBelow(random, 200), 6 + RandomBelow(random, 200));
    const auto wavelet = static_cast<WaveletKind>(1 + RandomBelow(random, 3));
    const int limit = literal::LevelLimit(wavelet, image.Rows(), image.Cols());
    const int levels = RandomBelow(random, limit + 1);
    const int row = RandomBelow(random, image.Rows());
    const int col = RandomBelow(random, image.Cols());
    const Region region{row, col, row + RandomBelow(random, image.Rows() - row),
                        col + RandomBelow(random, image.Cols() - col)};
    const auto expected = literal::GetROIValues(image, wavelet, levels, region);
    const int widening = wavelet == WaveletKind::kInteger22 ? 12 : 10;
    const auto mask = GetROIValues(image.Rows(), image.Cols(), region, widening, levels);
    for (int r = 0; r < image.Rows(); ++r) {
      for (int c = 0; c < image.Cols(); ++c) ASSERT_EQ(mask(r, c), expected(r, c)) << round;
    }
  }
}

}  // namespace
}  // namespace marovia
