// The region of interest: from a rectangle in a picture to the image, and on to the coefficients.
#pragma once

#include "marovia/error.h"
#include "marovia/image.h"
#include "marovia/types.h"

namespace marovia {

// Fails with `code` where a region reaches outside an image or ends before it begins.
void CheckRegion(const Region& region, const Image& image, Errc code);

// Two opposite corners in a picture's own units, in any order.
struct PictureRectangle {
  std::int16_t row1 = 0;
  std::int16_t col1 = 0;
  std::int16_t row2 = 0;
  std::int16_t col2 = 0;
  friend bool operator==(const PictureRectangle&, const PictureRectangle&) = default;
};

// The part of an image of rows x cols that a rectangle in its 256 x 256 picture covers, held to the
// image. A pixel of the picture is so many of its units high and wide.
Region GetROICoordinates(const PictureRectangle& rectangle, int rows, int cols,
                         float unitsPerPixelRow, float unitsPerPixelCol);

// 1 at the coefficients of a transform of `levels` levels that the region needs, 0 elsewhere. A
// coefficient of level k stands for the pixel at 2^k times its place in its band and is marked
// where that pixel lies in the region widened by W_k: `widening` at level 1, (2^(k-1) + 1) *
// widening above.
Grid<std::uint8_t> GetROIValues(int rows, int cols, const Region& region, int widening, int levels);

}  // namespace marovia
