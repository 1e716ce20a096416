#include "app/picture_place.h"

#include <algorithm>
#include <cmath>

namespace marovia {
namespace {

constexpr int kRim = 2;

int Coordinate(double place) {
  return static_cast<int>(std::clamp(std::floor(place) + 1, 0.0, double{kPictureSide}));
}

int RoomFor(double factor, double ratio) {
  return static_cast<int>(std::ceil(kPictureSide * factor / ratio)) + 2 * kRim;
}

}  // namespace

PicturePlace PicturePlace::In(int width, int height, double ratio) {
  const int across = static_cast<int>(std::lround(width * ratio));
  const int down = static_cast<int>(std::lround(height * ratio));
  const int factor = std::max(1, (std::min(across, down) - 2 * kRim) / kPictureSide);
  return {(across - kPictureSide * factor) / 2, (down - kPictureSide * factor) / 2, factor};
}

int PicturePlace::GoodRoom(double ratio) {
  return RoomFor(std::max(1.0, std::round(ratio)), ratio);
}

int PicturePlace::LeastRoom(double ratio) {
  return RoomFor(1, ratio);
}

PicturePoint PicturePlace::CoordinateAt(double x, double y) const {
  return {Coordinate((y - top) / factor), Coordinate((x - left) / factor)};
}

}  // namespace marovia
