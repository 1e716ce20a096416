#include "measures/region.h"

#include <algorithm>
#include <string>
#include <utility>

#include "base/checked.h"
#include "base/number_text.h"

namespace marovia {
namespace {

constexpr float kPictureSide = 256;

// The indices of one side that lie between two picture coordinates.
std::pair<int, int> IndicesBetween(std::int16_t a, std::int16_t b, int side, float unitsPerPixel) {
  const auto index = [&](std::int16_t coordinate) {
    const float scaled =
        static_cast<float>(coordinate) * (static_cast<float>(side) / kPictureSide) / unitsPerPixel;
    return std::clamp<int>(ToInt16(double{scaled}), 0, side - 1);
  };
  return {index(std::min(a, b)), index(std::max(a, b))};
}

int Widened(int widening, int level) {
  return level == 1 ? widening : ((1 << (level - 1)) + 1) * widening;
}

// A band of the transform: its corner and its sides.
struct BandArea {
  int row;
  int col;
  int rows;
  int cols;
};

void MarkBand(Grid<std::uint8_t>& mask, const BandArea& band, const Region& wide, int scale) {
  for (int i = 0; i < band.rows; ++i) {
    if (i * scale < wide.row1 || i * scale > wide.row2) continue;
    for (int j = 0; j < band.cols; ++j) {
      const bool inside = j * scale >= wide.col1 && j * scale <= wide.col2;
      mask(band.row + i, band.col + j) = inside ? 1 : 0;
    }
  }
}

}  // namespace

void CheckRegion(const Region& region, const Image& image, Errc code) {
  if (region.row1 < 0 || region.col1 < 0 || region.row1 > region.row2 ||
      region.col1 > region.col2 || region.row2 >= image.Rows() || region.col2 >= image.Cols()) {
    Fail(code,
         "The region reaches outside the image of " + SizeText(image.Rows(), image.Cols()) + ".");
  }
}

Region GetROICoordinates(const PictureRectangle& rectangle, int rows, int cols,
                         float unitsPerPixelRow, float unitsPerPixelCol) {
  const auto [row1, row2] = IndicesBetween(rectangle.row1, rectangle.row2, rows, unitsPerPixelRow);
  const auto [col1, col2] = IndicesBetween(rectangle.col1, rectangle.col2, cols, unitsPerPixelCol);
  return {row1, col1, row2, col2};
}

Grid<std::uint8_t> GetROIValues(int rows, int cols, const Region& region, int widening,
                                int levels) {
  Grid<std::uint8_t> mask(rows, cols);
  const auto widenedAt = [&](int wide) {
    return Region{region.row1 - wide, region.col1 - wide, region.row2 + wide, region.col2 + wide};
  };
  for (int level = 1; level <= levels; ++level) {
    const int r = rows >> (level - 1);
    const int c = cols >> (level - 1);
    const int halfR = r / 2;
    const int halfC = c / 2;
    const Region wide = widenedAt(Widened(widening, level));
    MarkBand(mask, {halfR, 0, r - halfR, halfC}, wide, 1 << level);
    MarkBand(mask, {0, halfC, halfR, c - halfC}, wide, 1 << level);
    MarkBand(mask, {halfR, halfC, r - halfR, c - halfC}, wide, 1 << level);
  }
  const int lowWidening = levels == 0 ? 0 : ((1 << (levels - 1)) + 1) * widening;
  MarkBand(mask, {0, 0, rows >> levels, cols >> levels}, widenedAt(lowWidening), 1 << levels);
  return mask;
}

}  // namespace marovia
