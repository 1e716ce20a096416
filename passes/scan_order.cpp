#include "passes/scan_order.h"

namespace marovia {
namespace {

ScanOrder CreateOrder(const BandGrid& grid, LevelOrderKind kind) {
  ScanOrder order;
  if (grid.levels > 0) {
    order.push_back(LowBand(grid));
    for (int level = 1; level <= grid.levels; ++level) AppendLevel(order, grid, level, kind);
  }
  AppendLeftOver(order, grid);
  return order;
}

}  // namespace

BandWalk LowBand(const BandGrid& grid) {
  return {WalkKind::kZigZag, 0, 0, grid.CornerRows(1), grid.CornerCols(1)};
}

void AppendLevel(ScanOrder& order, const BandGrid& grid, int level, LevelOrderKind kind) {
  const int r = grid.CornerRows(level);
  const int c = grid.CornerCols(level);
  const BandWalk lower{WalkKind::kRowSnake, r, 0, r, c};
  const BandWalk right{WalkKind::kColumnSnake, 0, c, r, c};
  const BandWalk diagonal{WalkKind::kZigZag, r, c, r, c};
  if (kind == LevelOrderKind::kLowerFirst) {
    order.insert(order.end(), {lower, right, diagonal});
  } else {
    order.insert(order.end(), {right, lower, diagonal});
  }
}

void AppendLeftOver(ScanOrder& order, const BandGrid& grid) {
  const bool banded = grid.levels > 0;
  const int r = banded ? 2 * grid.CornerRows(grid.levels) : 0;
  const int c = banded ? 2 * grid.CornerCols(grid.levels) : 0;
  if (c < grid.cols) order.push_back({WalkKind::kRaster, 0, c, r, grid.cols - c});
  if (r < grid.rows) order.push_back({WalkKind::kRaster, r, 0, grid.rows - r, grid.cols});
}

ScanOrder CreateScanOrderHF(const BandGrid& grid) {
  return CreateOrder(grid, LevelOrderKind::kLowerFirst);
}

ScanOrder CreateScanOrder(const BandGrid& grid) {
  return CreateOrder(grid, LevelOrderKind::kRightFirst);
}

Walk WalkOf(const ScanOrder& order, const BandGrid& grid) {
  std::size_t size = 0;
  for (const BandWalk& band : order) size += band.Size();
  Walk walk(size);
  ForOrder(order, grid, 0, {},
           [&walk](std::uint32_t number, std::uint32_t position) { walk[number] = position; });
  return walk;
}

}  // namespace marovia
