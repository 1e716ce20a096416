#include "app/picture_place.h"

#include <algorithm>
#include <cmath>

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

}  // namespace marovia
