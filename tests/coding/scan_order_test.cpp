// The fixed order of visiting against the one that is linked position by position.
#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>

#include "coding/visiting_order.h"
#include "tests/support/literal_scan.h"

namespace marovia {
namespace {

Walk WalkOfLinks(const BandGrid& grid) {
  const auto order = literal::CreateScanOrderHF(grid.levels, grid.rows, grid.cols);
  Walk walk;
  literal::Position p;
  for (std::size_t step = 0; step < grid.Size(); ++step, p = order.Next(p)) {
    walk.push_back(grid.Position(p.row, p.col));
  }
  return walk;
}

Walk FixedWalk(const BandGrid& grid) {
  const FixedOrder order(grid);
  const auto positions = order.Positions();
  return {positions.begin(), positions.end()};
}

TEST(FixedOrder, VisitsEveryPositionOnceAlongTheLinks) {
  for (const int rows : {1, 3, 4, 6, 8, 12, 16, 21, 24, 40, 75}) {
    for (const int cols : {1, 2, 4, 7, 8, 16, 20, 32, 33, 48}) {
      for (int levels = 0; 1 << levels <= std::min(rows, cols); ++levels) {
        SCOPED_TRACE(testing::Message() << rows << " x " << cols << ", " << levels << " levels");
        const BandGrid grid{rows, cols, levels};
        Walk walk = FixedWalk(grid);
        ASSERT_EQ(walk, WalkOfLinks(grid));
        std::sort(walk.begin(), walk.end());
        for (std::size_t i = 0; i < walk.size(); ++i) ASSERT_EQ(walk[i], i);
      }
    }
  }
}

TEST(FixedOrder, OfAnEightByEightImageIsThis) {
  const Walk walk = FixedWalk({8, 8, 1});
  const struct {
    std::size_t first;
    Walk positions;
  } cases[] = {{0, {0, 8, 1, 2, 9, 16, 24, 17, 10, 3, 11, 18, 25, 26, 19, 27}},
               {16, {32, 33, 34, 35, 43, 42, 41, 40, 48}},
               {31, {56, 4, 12, 20, 28, 29, 21}},
               {47, {7, 36, 44, 37, 38}}};
  for (const auto& c : cases) {
    const auto from = walk.begin() + static_cast<std::ptrdiff_t>(c.first);
    EXPECT_EQ(Walk(from, from + static_cast<std::ptrdiff_t>(c.positions.size())), c.positions);
  }
}

}  // namespace
}  // namespace marovia
