// What every reader of images does: the checks before it allocates, samples of any range and colour
// to grey values of 0 to 255, and a raster of one byte a sample.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "marovia/image.h"

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

// The image whose samples begin the bytes; what follows them is not looked at. Error kMalformed
// where there are too few.
Image RasterImage(ByteView bytes, Shape shape);

// Samples of 1, 2, 4 or 8 bits, which lie in a byte from its high bits to its low ones.
template <class Sample>
void UnpackSamples(ByteView packed, int bits, std::span<Sample> samples) {
  const auto width = static_cast<std::size_t>(bits);
  const std::size_t perByte = 8 / width;
  const unsigned mask = (1U << width) - 1;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const std::size_t shift = 8 - width * (i % perByte + 1);
    samples[i] = static_cast<Sample>(packed[i / perByte] >> shift & mask);
  }
}

// "P5", the two sizes on a line in the order given, "255", and the samples.
Bytes PgmFile(int firstSize, int secondSize, const Image& image);

// Components of any range up to 16 bits.
struct Rgb {
  std::uint32_t red = 0;
  std::uint32_t green = 0;
  std::uint32_t blue = 0;

  [[nodiscard]] bool IsGrey() const { return red == green && green == blue; }

  // A thousand times the luma of ITU-R BT.601. The weights add up to 1000, so a grey is its own
  // luma.
  [[nodiscard]] std::uint32_t ThousandLumas() const { return 299 * red + 587 * green + 114 * blue; }
};

// A sample of 0 to maximum on the scale of 0 to 255, rounded.
inline std::uint8_t ScaledToByte(std::uint32_t sample, std::uint32_t maximum) {
  if (maximum == 255) return static_cast<std::uint8_t>(sample);
  return static_cast<std::uint8_t>((std::uint64_t{sample} * 255 + maximum / 2) / maximum);
}

// The luma of components of 0 to maximum on the same scale, rounded once. A division by a constant
// takes a fraction of the time of another.
inline std::uint8_t LumaAsByte(const Rgb& colour, std::uint32_t maximum) {
  if (maximum == 255) return static_cast<std::uint8_t>((colour.ThousandLumas() + 500) / 1000);
  return ScaledToByte(colour.ThousandLumas(), 1000 * maximum);
}

// What a reader says of an image whose pixels were coloured, whose samples went up to `maximum`, or
// some of whose pixels let something through.
std::string Alteration(bool coloured, std::uint32_t maximum, bool transparent = false);

}  // namespace marovia
