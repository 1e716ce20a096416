// Where a picture stands in the room of its view, in pixels of the screen.
#pragma once

#include "app/control_kinds.h"

namespace marovia {

// In the middle at the largest whole factor that fits, so that nothing is blurred and every screen
// pixel belongs to one coordinate, 1 to 256.
struct PicturePlace {
  // Of a room of so many pixels, with a rim kept free; less than a factor of 1 is cut off.
  static PicturePlace In(int width, int height, int rim);

  // Outside the picture, of the nearest pixel.
  [[nodiscard]] PicturePoint CoordinateAt(double x, double y) const;

  int left = 0;
  int top = 0;
  int factor = 1;
};

}  // namespace marovia
