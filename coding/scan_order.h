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

enum class WalkKind {
  kRaster,       // row by row, each from the left
  kRowSnake,     // row by row, turning at every end
  kColumnSnake,  // column by column, turning at every end
  kZigZag,       // along the anti-diagonals, the first step going down:
                 // (0, 0), (1, 0), (0, 1), (0, 2), (1, 1), (2, 0), ...
};

// A rectangle of positions and the way in which it is visited.
struct BandWalk {
  WalkKind kind;
  int row;
  int col;
  int rows;
  int cols;

  [[nodiscard]] std::size_t Size() const {
    return static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols);
  }
};

// An order of visiting is a list of rectangles; no list of positions is kept.
using ScanOrder = std::vector<BandWalk>;

// WDR visits the lower band of a level before the right one, ASWDR after it.
enum class LevelOrderKind { kLowerFirst, kRightFirst };

// The low band; the three detail bands of a level (the lower one by rows, the right one by columns,
// the one across and the low band along the anti-diagonals); what no band covers where the sides
// are no multiples of 2^L.
BandWalk LowBand(const BandGrid& grid);
void AppendLevel(ScanOrder& order, const BandGrid& grid, int level, LevelOrderKind kind);
void AppendLeftOver(ScanOrder& order, const BandGrid& grid);

// Every position once. With 0 levels row by row.
ScanOrder CreateScanOrderHF(const BandGrid& grid);
ScanOrder CreateScanOrder(const BandGrid& grid);

// Calls visit(number, position) for every position of an order, numbered from `first` in the order
// of visiting; the calls themselves come in the order that memory likes.
template <class Visit>
void ForWalk(const BandWalk& band, const BandGrid& grid, std::uint32_t first, Visit visit) {
  const auto cols = static_cast<std::uint32_t>(band.cols);
  const auto rows = static_cast<std::uint32_t>(band.rows);
  const auto stride = static_cast<std::uint32_t>(grid.cols);
  const std::uint32_t corner = grid.Position(band.row, band.col);
  switch (band.kind) {
    case WalkKind::kRaster:
    case WalkKind::kRowSnake:
      for (std::uint32_t i = 0; i < rows; ++i) {
        const std::uint32_t number = first + i * cols;
        const std::uint32_t position = corner + i * stride;
        if (band.kind == WalkKind::kRaster || i % 2 == 0) {
          for (std::uint32_t j = 0; j < cols; ++j) visit(number + j, position + j);
        } else {
          for (std::uint32_t j = 0; j < cols; ++j) visit(number + cols - 1 - j, position + j);
        }
      }
      break;
    case WalkKind::kColumnSnake: {
      // A few columns at a time: a whole one at a time would take a cache line for every position.
      constexpr std::uint32_t kTile = 8;
      for (std::uint32_t left = 0; left < cols; left += kTile) {
        const std::uint32_t right = left + kTile < cols ? left + kTile : cols;
        for (std::uint32_t i = 0; i < rows; ++i) {
          for (std::uint32_t j = left; j < right; ++j) {
            const std::uint32_t along = j % 2 == 0 ? i : rows - 1 - i;
            visit(first + j * rows + along, corner + i * stride + j);
          }
        }
      }
      break;
    }
    case WalkKind::kZigZag: {
      std::uint32_t number = first;
      for (std::uint32_t d = 0; d + 1 < rows + cols; ++d) {
        const std::uint32_t top = d < cols ? 0 : d - cols + 1;
        const std::uint32_t bottom = d < rows ? d : rows - 1;
        const std::uint32_t length = bottom - top + 1;
        // From one row of an anti-diagonal to the next.
        const std::uint32_t step = stride - 1;
        const std::uint32_t start = corner + top * stride + d - top;
        if (d % 2 == 0) {
          for (std::uint32_t k = 0; k < length; ++k) visit(number + k, start + k * step);
        } else {
          const std::uint32_t last = number + length - 1;
          for (std::uint32_t k = 0; k < length; ++k) visit(last - k, start + k * step);
        }
        number += length;
      }
      break;
    }
  }
}

template <class Visit>
void ForOrder(const ScanOrder& order, const BandGrid& grid, std::uint32_t first, Visit visit) {
  for (const BandWalk& band : order) {
    ForWalk(band, grid, first, visit);
    first += static_cast<std::uint32_t>(band.Size());
  }
}

// The positions themselves.
Walk WalkOf(const ScanOrder& order, const BandGrid& grid);

}  // namespace marovia
