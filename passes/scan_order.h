// The order in which the coefficients are visited, from the coarsest bands to the finest.
//
// Positions are numbered row by row: row * columns + column. At level k (1 is the coarsest of L)
// the corner of r x c positions, r = (rows / 2^L) * 2^(k-1) and c likewise, is visited before, and
// the level adds the band below it, the band to its right and the diagonal one.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "marovia/grid.h"

#include "base/parallel.h"

namespace marovia {

using Walk = Buffer<std::uint32_t>;  // positions in the order of a visit

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
// the diagonal one and the low band along the anti-diagonals); what no band covers where the sides
// are no multiples of 2^L.
BandWalk LowBand(const BandGrid& grid);
void AppendLevel(ScanOrder& order, const BandGrid& grid, int level, LevelOrderKind kind);
void AppendLeftOver(ScanOrder& order, const BandGrid& grid);

// Every position once. With 0 levels row by row.
ScanOrder CreateScanOrderHF(const BandGrid& grid);
ScanOrder CreateScanOrder(const BandGrid& grid);

namespace detail {

// Both kinds of rows.
template <class Visit>
void ForRows(const BandWalk& band, const BandGrid& grid, std::uint32_t start, Share share,
             Visit visit) {
  const auto cols = static_cast<std::uint32_t>(band.cols);
  const auto rows = share.Of(static_cast<std::size_t>(band.rows));
  for (int i = static_cast<int>(rows.first); i < static_cast<int>(rows.last); ++i) {
    const std::uint32_t first = start + static_cast<std::uint32_t>(i) * cols;
    const std::uint32_t position = grid.Position(band.row + i, band.col);
    if (band.kind == WalkKind::kRaster || i % 2 == 0) {
      for (std::uint32_t j = 0; j < cols; ++j) visit(first + j, position + j);
    } else {
      for (std::uint32_t j = 0; j < cols; ++j) visit(first + cols - 1 - j, position + j);
    }
  }
}

// Calls visit(top, bottom, left, right) for tiles of a band. Without them a column or a diagonal
// would take a cache line, and in large images a page, for every position.
template <class Visit>
void ForTiles(const BandWalk& band, int tileRows, int tileCols, Share share, Visit visit) {
  const auto cols =
      share.Of(static_cast<std::size_t>(band.cols), static_cast<std::size_t>(tileCols));
  for (int left = static_cast<int>(cols.first); left < static_cast<int>(cols.last);
       left += tileCols) {
    const int right = std::min(left + tileCols, band.cols);
    for (int top = 0; top < band.rows; top += tileRows) {
      visit(top, std::min(top + tileRows, band.rows), left, right);
    }
  }
}

template <class Visit>
void ForColumns(const BandWalk& band, const BandGrid& grid, std::uint32_t first, Share share,
                Visit visit) {
  const auto rows = static_cast<std::uint32_t>(band.rows);
  // One line wide, and few enough rows high: lines a power of two apart share a place in the cache.
  ForTiles(band, 8, 16, share, [&](int top, int bottom, int left, int right) {
    for (int j = left; j < right; ++j) {
      const std::uint32_t start = first + static_cast<std::uint32_t>(j) * rows;
      for (int i = top; i < bottom; ++i) {
        const auto along = static_cast<std::uint32_t>(j % 2 == 0 ? i : band.rows - 1 - i);
        visit(start + along, grid.Position(band.row + i, band.col + j));
      }
    }
  });
}

// By diagonal, the number that its position in row 0 of the band has, or would have. From there on
// the numbers of even ones grow with the row; those of odd ones fall.
inline std::vector<std::uint32_t> DiagonalNumbers(const BandWalk& band, std::uint32_t first) {
  std::vector<std::uint32_t> numbers;
  for (int d = 0; d < band.rows + band.cols - 1; ++d) {
    const int top = d < band.cols ? 0 : d - band.cols + 1;
    const int bottom = d < band.rows ? d : band.rows - 1;
    numbers.push_back(first + static_cast<std::uint32_t>(d % 2 == 0 ? -top : bottom));
    first += static_cast<std::uint32_t>(bottom - top + 1);
  }
  return numbers;
}

template <class Visit>
void ForDiagonals(const BandWalk& band, const BandGrid& grid, std::uint32_t first, Share share,
                  Visit visit) {
  const std::vector<std::uint32_t> numbers = DiagonalNumbers(band, first);
  const std::uint32_t* atRow0 = numbers.data();
  // Large enough for most diagonals of a tile to fill their lines.
  ForTiles(band, 32, 32, share, [&](int top, int bottom, int left, int right) {
    for (int i = top; i < bottom; ++i) {
      const std::uint32_t position = grid.Position(band.row + i, band.col);
      for (int j = left; j < right; ++j) {
        const int along = (i + j) % 2 == 0 ? i : -i;
        visit(atRow0[i + j] + static_cast<std::uint32_t>(along),
              position + static_cast<std::uint32_t>(j));
      }
    }
  });
}

}  // namespace detail

// Calls visit(number, position) for every position of an order, numbered from `first` in the order
// of visiting; the calls themselves come in the order that memory likes. Or for a share of them.
template <class Visit>
void ForWalk(const BandWalk& band, const BandGrid& grid, std::uint32_t first, Share share,
             Visit visit) {
  switch (band.kind) {
    case WalkKind::kRaster:
    case WalkKind::kRowSnake:
      return detail::ForRows(band, grid, first, share, visit);
    case WalkKind::kColumnSnake:
      return detail::ForColumns(band, grid, first, share, visit);
    case WalkKind::kZigZag:
      return detail::ForDiagonals(band, grid, first, share, visit);
  }
}

template <class Visit>
void ForOrder(const ScanOrder& order, const BandGrid& grid, std::uint32_t first, Share share,
              Visit visit) {
  for (const BandWalk& band : order) {
    ForWalk(band, grid, first, share, visit);
    first += static_cast<std::uint32_t>(band.Size());
  }
}

// The positions themselves.
Walk WalkOf(const ScanOrder& order, const BandGrid& grid);

// An order of homes calls visit(home, position) for a share of them, as often as ForHomes(share,
// visit) is called on it. From that follow every home's value from the grid of positions, the way
// back, and the positions themselves.
template <class Order>
Buffer<float> GatherHomes(const Order& order, std::span<const float> grid, int threads) {
  Buffer<float> homes(grid.size());
  float* to = homes.data();
  const float* from = grid.data();
  RunShares(UsefulThreads(threads, homes.size()), [&order, to, from](Share share) {
    order.ForHomes(share,
                   [=](std::uint32_t home, std::uint32_t position) { to[home] = from[position]; });
  });
  return homes;
}

template <class Order>
void ScatterHomes(const Order& order, std::span<const float> homes, std::span<float> grid,
                  int threads) {
  float* to = grid.data();
  const float* from = homes.data();
  RunShares(UsefulThreads(threads, homes.size()), [&order, to, from](Share share) {
    order.ForHomes(share,
                   [=](std::uint32_t home, std::uint32_t position) { to[position] = from[home]; });
  });
}

template <class Order>
Walk PositionsOfHomes(const Order& order) {
  Walk positions(order.HomeCount());
  std::uint32_t* to = positions.data();
  order.ForHomes({}, [=](std::uint32_t home, std::uint32_t position) { to[home] = position; });
  return positions;
}

}  // namespace marovia
