// The orders of visiting against lists of positions.
#include <gtest/gtest.h>
#include <random>

#include "aswdr/adaptive_order.h"
#include "tests/support/plain_codec.h"
#include "tests/support/test_images.h"

namespace marovia {
namespace {

constexpr BandGrid kGrids[] = {{16, 16, 2}, {8, 8, 1},   {32, 16, 3}, {64, 64, 5}, {48, 80, 4},
                               {4, 4, 0},   {37, 21, 3}, {13, 50, 2}, {6, 9, 1},   {1, 7, 0}};

Walk WalkOf(const plain::Positions& order, const BandGrid& grid) {
  Walk walk;
  for (const plain::Position p : order) walk.push_back(grid.Position(p.row, p.col));
  return walk;
}

// The positions of all homes as a pass visits them.
Walk VisitedBy(VisitingOrder& order) {
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

TEST(FixedOrder, IsThatOfTheList) {
  for (const BandGrid& grid : kGrids) {
    FixedOrder order(grid);
    const auto expected = plain::FirstOrder(grid.rows, grid.cols, grid.levels, true);
    EXPECT_EQ(VisitedBy(order), WalkOf(expected, grid)) << grid.rows;
  }
}

// At first hardly anything is found, in the end half of everything; one pass finds nothing.
TEST(AdaptiveOrder, IsMadeAnewLikeTheListAfterEveryPass) {
  std::mt19937 random(6);
  for (const BandGrid& grid : kGrids) {
    AdaptiveOrder order(grid);
    const auto positions = order.Positions();
    auto expected = plain::FirstOrder(grid.rows, grid.cols, grid.levels, false);
    Grid<float> quantized(grid.rows, grid.cols);
    HomeSet found(grid.Size());
    for (int pass = 1; pass <= 8; ++pass) {
      ASSERT_EQ(VisitedBy(order), WalkOf(expected, grid)) << grid.rows << ", pass " << pass;
      const int rarity = pass == 4 ? 1 << 30 : 2 + 600 / (pass * pass * pass);
      for (Home home = 0; home < grid.Size(); ++home) {
        if (found.Has(home) || test::RandomBelow(random, rarity) != 0) continue;
        found.Insert(home);
        quantized.Samples()[positions[home]] = 1;
      }
      order.Rebuild(found);
      plain::Reorder(expected, quantized, grid.levels);
    }
  }
}

}  // namespace
}  // namespace marovia
