// The order in which the coefficients are visited, from the coarsest bands to the finest.
//
// Positions are numbered row by row: row * columns + column. At level k (1 is the coarsest of L)
// the corner of r x c positions, r = (rows / 2^L) * 2^(k-1) and c likewise, is visited before, and
// the level adds the band below it, the band to its right and the one across.
#pragma once

#include <cstdint>
#include <vector>

namespace marovia {

using Walk = std::vector<std::uint32_t>;  // positions in the order of a visit

struct BandGrid {
  int rows;  // of the image
  int cols;
  int levels;

  // Sides of the corner that level k begins with; of level 1, the low band.
  [[nodiscard]] int CornerRows(int level) const { return (rows >> levels) << (level - 1); }
  [[nodiscard]] int CornerCols(int level) const { return (cols >> levels) << (level - 1); }
  [[nodiscard]] std::uint32_t Position(int r, int c) const {
    return static_cast<std::uint32_t>(r) * static_cast<std::uint32_t>(cols) +
           static_cast<std::uint32_t>(c);
  }
  [[nodiscard]] std::size_t Size() const {
    return static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols);
  }
};

// WDR visits the lower band of a level before the right one, ASWDR after it.
enum class LevelOrderKind { kLowerFirst, kRightFirst };

// The anti-diagonals of the block of r x c positions whose corner is (row, col), the first step
// going down: (0, 0), (1, 0), (0, 1), (0, 2), (1, 1), (2, 0), ...
void AppendZigZag(Walk& walk, const BandGrid& grid, int row, int col, int r, int c);

// The detail bands of a level: the lower band row by row and the right one column by column,
// turning at every end, and the zig-zag of the one across.
void AppendLevel(Walk& walk, const BandGrid& grid, int level, LevelOrderKind kind);

// The positions that no band covers where the sides are no multiples of 2^L, row by row.
void AppendLeftOver(Walk& walk, const BandGrid& grid);

// Every position once. With 0 levels row by row.
Walk CreateScanOrderHF(const BandGrid& grid);
Walk CreateScanOrder(const BandGrid& grid);

}  // namespace marovia
