// Sides: how many levels they bear, and the padding of an image.
#pragma once

#include "marovia/image.h"
#include "marovia/types.h"

namespace marovia {

struct Sides {
  int rows = 0;
  int cols = 0;

  [[nodiscard]] std::int64_t Pixels() const { return std::int64_t{rows} * cols; }
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

// The most levels whose byte in the header has room for the mark of padding.
constexpr int kMostPaddedLevels = 12;

// Error kLimit where a side exceeds kMostSide.
void CheckSides(Sides sides);

// The limit of the levels for an image that is padded, or coded as it is: at least 0 in the first
// case, below it for sides of 1 and 2 in the second.
int LevelLimitOf(Sides sides, WaveletKind wavelet, bool pad);

// As many levels as help, up to 6 and the limit, as long as padding adds at most 6 % of the pixels;
// but not fewer than 3 unless the limit is lower.
int DefaultLevels(Sides sides, WaveletKind wavelet);

// The image with its last row and column repeated up to PaddedSides.
Image Padded(const Image& image, int levels);
Image Cropped(const Image& image, Sides sides);

}  // namespace marovia
