// Where a picture stands in the room of its view, in pixels of the screen.
#pragma once

#include "app/control_kinds.h"
#include "image/sampling.h"

namespace marovia {

// In the middle at the largest whole factor that fits, so that nothing is blurred and every screen
// pixel belongs to one coordinate, 1 to 256. What is left of them or above is coordinate 0, which
// no pixel of the picture shows, but by which a region reaches the first row and column of the
// image.
struct PicturePlace {
  // In a room whose units are `ratio` pixels wide, with a rim kept free: the focus frame, and what
  // of an outline at the edge lies outside. Less than a factor of 1 is cut off.
  static PicturePlace In(int width, int height, double ratio);
  // The side of a room for the factor nearest to the ratio, and of the smallest, for a factor of 1.
  static int GoodRoom(double ratio);
  static int LeastRoom(double ratio);

  // Of a pixel of the screen; outside the picture, the nearest from 0 to 256.
  [[nodiscard]] PicturePoint CoordinateAt(double x, double y) const;

  int left = 0;
  int top = 0;
  int factor = 1;
};

}  // namespace marovia
