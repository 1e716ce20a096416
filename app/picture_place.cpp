#include "app/picture_place.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace marovia {
namespace {

constexpr int kSide = 256;

int Coordinate(double place) {
  return static_cast<int>(std::clamp(std::floor(place) + 1, 1.0, double{kSide}));
}

}  // namespace

PicturePlace PicturePlace::In(int width, int height, int rim) {
  const int factor = std::max(1, (std::min(width, height) - 2 * rim) / kSide);
  return {(width - kSide * factor) / 2, (height - kSide * factor) / 2, factor};
}

PicturePoint PicturePlace::CoordinateAt(double x, double y) const {
  return {Coordinate((y - top) / factor), Coordinate((x - left) / factor)};
}

ScreenBox PicturePlace::Span(PicturePoint first, PicturePoint last) const {
  return {.left = left + (std::min(first.col, last.col) - 1) * factor,
          .top = top + (std::min(first.row, last.row) - 1) * factor,
          .width = (std::abs(last.col - first.col) + 1) * factor,
          .height = (std::abs(last.row - first.row) + 1) * factor};
}

ScreenBox PicturePlace::Whole() const {
  return Span({1, 1}, {kSide, kSide});
}

}  // namespace marovia
