// The order in which coefficients are visited as long as nothing is found, as the numbers of their
// homes, and which homes lie around one.
//
// The low band comes row by row, then the right, lower and diagonal band of the coarsest level,
// then level after level the 2 x 2 blocks of children in the order of their parents, at last what
// no band covers. So the children of home p are the homes 4p to 4p + 3, and a band of level k is
// made of square tiles, one for each coefficient of the coarsest level, in which the bits of row
// and column alternate:
//
//    tile of 4 x 4     0  1  4  5       homes of level k, with n = 4^(k-1) * those of the low band:
//                      2  3  6  7         n ..  right    2n ..  lower    3n .. 4n-1  diagonal
//                      8  9 12 13
//                     10 11 14 15
#pragma once

#include <array>
#include <bit>
#include <span>
#include <vector>

#include "marovia/grid.h"

#include "base/bits.h"
#include "passes/homes.h"
#include "passes/scan_order.h"

namespace marovia {

class RestingOrder {
 public:
  explicit RestingOrder(const BandGrid& grid);

  [[nodiscard]] std::size_t HomeCount() const { return grid_.Size(); }
  // Every home's value from the grid of positions.
  [[nodiscard]] Buffer<float> Gather(std::span<const float> grid, int threads) const;
  [[nodiscard]] Walk Positions() const;
  [[nodiscard]] std::uint32_t PositionOf(Home home) const;

  // Calls visit(home, position) for a share of the homes, in the order of their numbers but for
  // what no band covers.
  template <class Visit>
  void ForHomes(Share share, Visit visit) const;

  // Calls raise(other, amount) for the homes that a found one makes more probable: its neighbours
  // row by row, its place in the other bands of the level, its children. What no band covers has
  // none, the low band neighbours alone.
  template <class Raise>
  MAROVIA_INLINE void ForKin(Home home, Raise raise) const;

 private:
  struct Level {
    Home bandSize;
    Home tileSize;  // places of a tile, a power of 4
    Home tileCols;  // tiles side by side in a band
    Home tileRow;   // places of a row of tiles
    Home colMask;   // the bits of a place that are its column in its tile, and its row
    Home rowMask;
  };
  // A place is the number of a home in its band. The steps to the places around it, 0 where the
  // band ends.
  struct Steps {
    Home up;
    Home down;
    Home left;
    Home right;
  };

  MAROVIA_INLINE static Steps StepsFrom(Home place, const Level& level);
  [[nodiscard]] const Level& LevelOf(Home home) const {
    // Those of as many bits belong to two levels at most.
    const unsigned level = highestLevels_[static_cast<std::size_t>(std::bit_width(home))];
    return levels_[level - (home < levels_[level].bandSize && level > 0 ? 1 : 0)];
  }
  // 0 is the low band, then right, lower and diagonal.
  MAROVIA_INLINE static Home BandOf(Home home, const Level& level) {
    return (home >= level.bandSize ? 1U : 0) + (home >= 2 * level.bandSize ? 1U : 0) +
           (home >= 3 * level.bandSize ? 1U : 0);
  }
  [[nodiscard]] std::uint32_t LeftOverPosition(Home home) const;
  // The position of the first place of a tile.
  [[nodiscard]] std::uint32_t TileCorner(const Level& level, unsigned band, Home tile) const;

  BandGrid grid_;
  std::vector<Level> levels_;  // the coarsest first
  // By the number of bits of a home: the finest level that such a home may belong to.
  std::array<std::uint8_t, 33> highestLevels_{};
  Home banded_ = 0;                     // homes that a band covers
  std::vector<std::uint32_t> offsets_;  // by place in a tile: its position from the tile's corner
  ScanOrder leftOver_;
};

MAROVIA_INLINE RestingOrder::Steps RestingOrder::StepsFrom(Home place, const Level& level) {
  // With the other bits set a carry runs through them, with the other bits clear a borrow does.
  const Home row = place & level.rowMask;
  const Home col = place & level.colMask;
  Steps steps{
      ((row - 1) & level.rowMask) - row, (((place | ~level.rowMask) + 1) & level.rowMask) - row,
      ((col - 1) & level.colMask) - col, (((place | ~level.colMask) + 1) & level.colMask) - col};
  if (row == 0) steps.up = place < level.tileRow ? 0 : steps.up - level.tileRow;
  if (row == level.rowMask) {
    steps.down = place + level.tileRow >= level.bandSize ? 0 : steps.down + level.tileRow;
  }
  if (col == 0 || col == level.colMask) {
    const Home tileCol = place / level.tileSize % level.tileCols;
    if (col == 0) steps.left = tileCol == 0 ? 0 : steps.left - level.tileSize;
    if (col == level.colMask) {
      steps.right = tileCol + 1 == level.tileCols ? 0 : steps.right + level.tileSize;
    }
  }
  return steps;
}

template <class Raise>
MAROVIA_INLINE void RestingOrder::ForKin(Home home, Raise raise) const {
  if (home >= banded_) return;
  const Level& level = LevelOf(home);
  const Home band = BandOf(home, level);
  const Steps steps = StepsFrom(home - band * level.bandSize, level);
  // Edges run upright in a right band, across in a lower one.
  static constexpr unsigned kUpright[] = {2, 3, 1, 2};
  const unsigned upright = kUpright[band];
  if (steps.up != 0) {
    const Home above = home + steps.up;
    if (steps.left != 0) raise(above + steps.left, 1U);
    raise(above, upright);
    if (steps.right != 0) raise(above + steps.right, 1U);
  }
  if (steps.left != 0) raise(home + steps.left, 4 - upright);
  if (steps.right != 0) raise(home + steps.right, 4 - upright);
  if (steps.down != 0) {
    const Home below = home + steps.down;
    if (steps.left != 0) raise(below + steps.left, 1U);
    raise(below, upright);
    if (steps.right != 0) raise(below + steps.right, 1U);
  }
  if (band == 0) return;
  raise(home + (band == 1 ? 1 : 1 - band) * level.bandSize, 1U);
  raise(home + (band == 3 ? Home{0} - 1 : 3 - band) * level.bandSize, 1U);
  if (&level == &levels_.back()) return;
  for (Home child = 4 * home; child < 4 * home + 4; ++child) raise(child, 1U);
}

}  // namespace marovia
