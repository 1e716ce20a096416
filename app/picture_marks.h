// The lines over a picture: the outline of a region, and the crosshair.
#pragma once

#include <cstdint>
#include <vector>

#include "app/control_kinds.h"

namespace marovia {

// A rectangle to fill, in the picture's coordinates.
struct PictureMark {
  int row = 0;
  int col = 0;
  int rows = 0;
  int cols = 0;
  std::uint32_t argb = 0;  // opacity, red, green and blue, the highest byte first
};

// In the order in which they are painted: bright lines of one coordinate over dark ones of three
// are seen on any ground.
std::vector<PictureMark> MarksOver(const PictureBox& picture);

}  // namespace marovia
