// The sides of an image, and how they are padded.
#pragma once

#include "marovia/types.h"

namespace marovia {

struct Sides {
  int rows = 0;
  int cols = 0;
  friend bool operator==(const Sides&, const Sides&) = default;
};

// Sides of 1 and 2 are padded to this, the smallest that bears 0 levels of coding.
constexpr int kLeastPaddedSide = 4;

constexpr int PaddedSide(int side, int levels) {
  if (side < 3) side = kLeastPaddedSide;
  const int unit = 1 << levels;
  return (side + unit - 1) / unit * unit;
}

// The next multiples of 2^levels.
constexpr Sides PaddedSides(Sides sides, int levels) {
  return {PaddedSide(sides.rows, levels), PaddedSide(sides.cols, levels)};
}

}  // namespace marovia
