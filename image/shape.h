// The checks that every reader makes before it allocates an image.
#pragma once

#include <cstddef>
#include <cstdint>

namespace marovia {

struct Shape {
  int rows = 0;
  int cols = 0;

  [[nodiscard]] std::int64_t Pixels() const { return std::int64_t{rows} * cols; }
};

// Error kMalformed where a side is 0 or less, kLimit where the image has more than maxPixels pixels
// or a side leaves an int. A shape that passes has at most 2^56 pixels, so that a few bytes a pixel
// can be counted in 64 bits.
Shape CheckedShape(std::int64_t rows, std::int64_t cols, std::int64_t maxPixels);

// Error kMalformed where the samples of an image need more bytes than there are.
void RequireSamples(Shape shape, std::size_t present, std::int64_t needed);

}  // namespace marovia
