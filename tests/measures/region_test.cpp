#include "measures/region.h"

#include "tests/support/testing.h"

namespace marovia {
namespace {

TEST(RegionCoordinates, AreOrderedScaledRoundedAndHeldToTheImage) {
  const struct {
    PictureRectangle drawn;
    int rows, cols;
    float rowUnits, colUnits;
    std::array<int, 4> region;
  } cases[] = {{{30, 20, 10, 40}, 256, 256, 1, 1, {10, 20, 30, 40}},
               {{10, 40, 30, 20}, 512, 128, 1, 1, {20, 10, 60, 20}},
               {{1, 3, 5, 7}, 128, 128, 1, 1, {0, 2, 2, 4}},  // 0.5, 1.5, 2.5 and 3.5
               {{-5, -1, 300, 256}, 256, 256, 1, 1, {0, 0, 255, 255}},
               {{0, 0, 255, 255}, 100, 37, 1, 1, {0, 0, 99, 36}},
               {{300, 300, 32767, 32767}, 256, 256, 15, 30, {20, 10, 255, 255}}};
  for (const auto& c : cases) {
    const Region r = GetROICoordinates(c.drawn, c.rows, c.cols, c.rowUnits, c.colUnits);
    EXPECT_EQ((std::array{r.row1, r.col1, r.row2, r.col2}), c.region);
  }
}

std::string MaskText(int levels, const Region& region, int widening, int rows = 8) {
  const auto mask = GetROIValues(rows, 8, region, widening, levels);
  std::string text;
  for (int r = 0; r < rows; ++r) {
    for (const std::uint8_t value : mask.Row(r)) text += value == 0 ? '.' : '#';
    text += '\n';
  }
  return text;
}

// A coefficient of level k stands for the pixel at 2^k times its place in its band; the region
// reaches the widening further at level 1, and (2^(k-1) + 1) times as far above and in the low
// band.
TEST(RegionMask, MarksInEveryBandWhatTheWidenedRegionHolds) {
  EXPECT_EQ(MaskText(0, {1, 2, 2, 7}, 5, 4), "........\n..######\n..######\n........\n");
  const std::string half = "........\n.##..##.\n.##..##.\n........\n";
  EXPECT_EQ(MaskText(1, {2, 2, 4, 4}, 0), half + half);
  EXPECT_EQ(MaskText(1, {4, 4, 4, 4}, 1),
            "........\n.###....\n.###..#.\n.###....\n"
            "........\n........\n..#...#.\n........\n");
  EXPECT_EQ(MaskText(2, {7, 7, 7, 7}, 1),
            "........\n.#.#....\n........\n.#.#...#\n"
            "........\n........\n........\n...#...#\n");
}

}  // namespace
}  // namespace marovia
