#include "coding/scan_order.h"

#include <algorithm>

namespace marovia {
namespace {

void AppendRowSnake(Walk& walk, const BandGrid& grid, int row, int col, int r, int c) {
  for (int i = 0; i < r; ++i) {
    for (int j = 0; j < c; ++j) {
      walk.push_back(grid.Position(row + i, col + (i % 2 == 0 ? j : c - 1 - j)));
    }
  }
}

void AppendColumnSnake(Walk& walk, const BandGrid& grid, int row, int col, int r, int c) {
  for (int j = 0; j < c; ++j) {
    for (int i = 0; i < r; ++i) {
      walk.push_back(grid.Position(row + (j % 2 == 0 ? i : r - 1 - i), col + j));
    }
  }
}

Walk CreateOrder(const BandGrid& grid, LevelOrderKind kind) {
  Walk walk;
  walk.reserve(grid.Size());
  if (grid.levels > 0) {
    AppendZigZag(walk, grid, 0, 0, grid.CornerRows(1), grid.CornerCols(1));
    for (int level = 1; level <= grid.levels; ++level) AppendLevel(walk, grid, level, kind);
  }
  AppendLeftOver(walk, grid);
  return walk;
}

}  // namespace

void AppendZigZag(Walk& walk, const BandGrid& grid, int row, int col, int r, int c) {
  for (int d = 0; d <= r + c - 2; ++d) {
    const int top = std::max(0, d - (c - 1));
    const int bottom = std::min(d, r - 1);
    if (d % 2 == 0) {
      for (int i = top; i <= bottom; ++i) walk.push_back(grid.Position(row + i, col + d - i));
    } else {
      for (int i = bottom; i >= top; --i) walk.push_back(grid.Position(row + i, col + d - i));
    }
  }
}

void AppendLevel(Walk& walk, const BandGrid& grid, int level, LevelOrderKind kind) {
  const int r = grid.CornerRows(level);
  const int c = grid.CornerCols(level);
  if (kind == LevelOrderKind::kLowerFirst) AppendRowSnake(walk, grid, r, 0, r, c);
  AppendColumnSnake(walk, grid, 0, c, r, c);
  if (kind == LevelOrderKind::kRightFirst) AppendRowSnake(walk, grid, r, 0, r, c);
  AppendZigZag(walk, grid, r, c, r, c);
}

void AppendLeftOver(Walk& walk, const BandGrid& grid) {
  const bool banded = grid.levels > 0;
  const int r = banded ? 2 * grid.CornerRows(grid.levels) : 0;
  const int c = banded ? 2 * grid.CornerCols(grid.levels) : 0;
  for (int i = 0; i < grid.rows; ++i) {
    for (int j = i < r ? c : 0; j < grid.cols; ++j) walk.push_back(grid.Position(i, j));
  }
}

Walk CreateScanOrderHF(const BandGrid& grid) {
  return CreateOrder(grid, LevelOrderKind::kLowerFirst);
}

Walk CreateScanOrder(const BandGrid& grid) {
  return CreateOrder(grid, LevelOrderKind::kRightFirst);
}

}  // namespace marovia
