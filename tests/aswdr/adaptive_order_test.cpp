// The order of visiting against the one that is relinked position by position.
#include "aswdr/adaptive_order.h"

#include <gtest/gtest.h>
#include <random>

#include "tests/support/literal_scan.h"
#include "tests/support/test_images.h"

namespace marovia {
namespace {

// The positions of all homes as a pass visits them.
Walk VisitedBy(AdaptiveOrder& order) {
  Walk walk;
  const auto positions = order.Positions();
  const auto visit = [&](Home home) { walk.push_back(positions[home]); };
  for (std::size_t i = 0; i < order.Stretches().size(); ++i) {
    const Stretch& stretch = order.Stretches()[i];
    if (!stretch.ordered) {
      for (Home home = stretch.first; home < stretch.last; ++home) visit(home);
      continue;
    }
    const StretchOrder ordered = order.OrderOf(i);
    for (const Home home : ordered.homes) visit(home);
    for (const auto& blocks :
         {ordered.blocksOfFound, ordered.blocksWithFound, ordered.blocksWithout}) {
      for (const Home block : blocks) {
        for (Home home = 4 * block; home < 4 * block + 4; ++home) visit(home);
      }
    }
  }
  return walk;
}

Walk WalkOfLinks(const literal::ScanOrder& order, const BandGrid& grid) {
  Walk walk;
  literal::Position p;
  for (std::size_t step = 0; step < grid.Size(); ++step, p = order.Next(p)) {
    walk.push_back(grid.Position(p.row, p.col));
  }
  return walk;
}

TEST(AdaptiveOrder, IsRelinkedAlikeAfterEveryPass) {
  const BandGrid grids[] = {{16, 16, 2}, {8, 8, 1},   {32, 16, 3}, {64, 64, 5}, {48, 80, 4},
                            {4, 4, 0},   {37, 21, 3}, {13, 50, 2}, {6, 9, 1}};
  std::mt19937 random(6);
  for (const BandGrid& grid : grids) {
    AdaptiveOrder order(grid);
    const auto positions = order.Positions();
    literal::ScanOrder plain = literal::CreateScanOrder(grid.levels, grid.rows, grid.cols);
    Grid<float> quantized(grid.rows, grid.cols);
    HomeSet found(grid.Size());
    float threshold = 256;
    for (int pass = 1; pass <= 8; ++pass, threshold /= 2) {
      SCOPED_TRACE(testing::Message() << grid.rows << " x " << grid.cols << ", pass " << pass);
      ASSERT_EQ(VisitedBy(order), WalkOfLinks(plain, grid));
      // At first hardly anything is found, in the end half of everything; one pass finds nothing.
      const int rarity = pass == 4 ? 1 << 30 : 2 + 600 / (pass * pass * pass);
      for (Home home = 0; home < grid.Size(); ++home) {
        if (found.Has(home) || test::RandomBelow(random, rarity) != 0) continue;
        found.Insert(home);
        quantized.Samples()[positions[home]] = pass % 2 == 0 ? threshold : -threshold;
      }
      order.Rebuild(found);
      literal::CreateNewScanOrder(plain, quantized, grid.levels, threshold);
    }
  }
}

}  // namespace
}  // namespace marovia
