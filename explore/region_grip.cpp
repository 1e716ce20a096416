#include "explore/region_grip.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace marovia {
namespace {

bool IsNear(double one, double other, double reach) {
  return std::abs(one - other) <= reach;
}

int Pixel(double place, int side) {
  return static_cast<int>(std::clamp(std::floor(place), 0.0, side - 1.0));
}

// A length from `low` to `high` moved whole, held inside a side.
std::pair<int, int> Moved(int low, int high, double by, int side) {
  const int shift = std::clamp(static_cast<int>(std::lround(by)), -low, side - 1 - high);
  return {low + shift, high + shift};
}

std::pair<int, int> Stretched(int low, int high, bool movesLow, bool movesHigh, double by,
                              int side) {
  if (movesLow && movesHigh) return Moved(low, high, by, side);
  const int moved = Pixel((movesLow ? low : high) + std::round(by), side);
  if (movesLow) low = moved;
  if (movesHigh) high = moved;
  return std::minmax({low, high});
}

}  // namespace

std::optional<Grip> GripAt(const Region& region, Spot place, double reach) {
  const double right = region.col2 + 1;
  const double bottom = region.row2 + 1;
  const auto [x, y] = place;
  if (x < region.col1 - reach || x > right + reach || y < region.row1 - reach || y > bottom + reach)
    return std::nullopt;
  Grip grip{.left = IsNear(x, region.col1, reach), .top = IsNear(y, region.row1, reach)};
  grip.right = !grip.left && IsNear(x, right, reach);
  grip.bottom = !grip.top && IsNear(y, bottom, reach);
  if (grip == Grip{}) return Grip{true, true, true, true};
  return grip;
}

Region Dragged(const Region& region, const Grip& grip, Spot by, int rows, int cols) {
  const auto [row1, row2] = Stretched(region.row1, region.row2, grip.top, grip.bottom, by.y, rows);
  const auto [col1, col2] = Stretched(region.col1, region.col2, grip.left, grip.right, by.x, cols);
  return {row1, col1, row2, col2};
}

Region RegionBetween(Spot one, Spot other, int rows, int cols) {
  const auto [row1, row2] = std::minmax({Pixel(one.y, rows), Pixel(other.y, rows)});
  const auto [col1, col2] = std::minmax({Pixel(one.x, cols), Pixel(other.x, cols)});
  return {row1, col1, row2, col2};
}

}  // namespace marovia
