#include "app/viewing.h"

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

constexpr std::uint32_t kWhite = 0xffffffff;
constexpr std::uint32_t kShade = 0xbe000000;

std::uint32_t Opaque(const Colour& colour) {
  return 0xff000000U | std::uint32_t{colour.red} << 16U | std::uint32_t{colour.green} << 8U |
         colour.blue;
}

// The parts of a figure do not overlap: a shade that is painted twice would be darker there.
using Marks = std::vector<PictureMark>;

// The border of a rectangle, so many coordinates wide to both sides of its own.
Marks Frame(const PictureRectangle& corners, int reach) {
  const auto [row1, row2] = std::minmax<int>({corners.row1, corners.row2});
  const auto [col1, col2] = std::minmax<int>({corners.col1, corners.col2});
  const int width = 2 * reach + 1;
  const int rows = row2 - row1 + width;
  const int cols = col2 - col1 + width;
  const int top = row1 - reach;
  const int left = col1 - reach;
  if (std::min(rows, cols) <= 2 * width) return {{top, left, rows, cols}};
  return {{top, left, width, cols},
          {top + width, left, rows - 2 * width, width},
          {top + width, left + cols - width, rows - 2 * width, width},
          {top + rows - width, left, width, cols}};
}

// Both lines through a point, all across the picture from coordinate 0.
Marks Cross(const PicturePoint& at, int reach) {
  const int width = 2 * reach + 1;
  return {{at.row - reach, -reach, width, kPictureSide + width},
          {-reach, at.col - reach, at.row, width},
          {at.row + reach + 1, at.col - reach, kPictureSide - at.row, width}};
}

void Add(Marks& marks, Marks figure, std::uint32_t argb) {
  for (PictureMark& part : figure) part.argb = argb;
  marks.insert(marks.end(), figure.begin(), figure.end());
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

std::vector<PictureMark> MarksOver(const PictureBox& picture) {
  Marks marks;
  if (const auto& outline = picture.outline) {
    Add(marks, Frame(outline->corners, 1), kShade);
    Add(marks, Frame(outline->corners, 0), Opaque(outline->colour));
  }
  if (const auto& at = picture.crosshair) {
    Add(marks, Cross(*at, 1), kShade);
    Add(marks, Cross(*at, 0), kWhite);
  }
  return marks;
}

std::string SizeText(const Image& image) {
  return std::to_string(image.Cols()) + " x " + std::to_string(image.Rows());
}

}  // namespace marovia
