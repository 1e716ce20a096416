// BMP: the headers that stand before the pixels.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "marovia/image.h"

#include "image/raster.h"

namespace marovia {

// Every header from 12 to 124 bytes, 1, 2, 4, 8, 16, 24 and 32 bits a pixel, masks, run-length
// codes and both row orders; transparency is dropped and told of. Components of fewer than 8 bits
// are spread over 0 to 255. A pixel whose index its palette does not have is kMalformed.
LoadedImage ReadBmp(ByteView file, std::int64_t maxPixels);

inline constexpr std::size_t kBmpFileHeaderBytes = 14;
inline constexpr std::size_t kBmpCoreHeaderBytes = 12;
inline constexpr std::size_t kBmpInfoHeaderBytes = 40;

enum class BmpCompression : std::uint32_t { kNone = 0, kRle8 = 1, kRle4 = 2, kBitFields = 3 };

// The bits of a pixel that hold one component.
struct BmpChannel {
  std::uint32_t mask = 0;
  int shift = 0;
  std::uint32_t maximum = 0;  // mask >> shift, one less than a power of two

  [[nodiscard]] std::uint8_t Of(std::uint32_t pixel) const {
    return ScaledToByte((pixel & mask) >> shift, maximum);
  }
};

struct BmpHeader {
  Shape shape;
  bool bottomUp = true;
  int bits = 0;  // a pixel: 1, 2, 4, 8, 16, 24 or 32
  BmpCompression compression = BmpCompression::kNone;
  std::size_t pixelOffset = 0;           // from the start of the file, within it
  std::vector<Rgb> palette;              // with at most 8 bits; at most 2^bits colours
  std::array<BmpChannel, 3> channels{};  // with more than 8 bits: red, green, blue
  std::uint32_t alphaMask = 0;           // and the bits of how opaque a pixel is,
  bool alphaTold = false;                // which the header tells of, or which are just left over

  [[nodiscard]] bool HasPalette() const { return bits <= 8; }

  // Where in the image a row of the file goes.
  [[nodiscard]] int ImageRow(int fileRow) const {
    return bottomUp ? shape.rows - 1 - fileRow : fileRow;
  }
};

// Reads the file header and the information header (12, 40, 52, 56, 108 or 124 bytes; of OS/2 16 or
// 64), the masks and the palette. The sizes of the file and of the pixels that the headers give are
// not used: many programs write them wrong. A palette longer than the depth allows is cut, one that
// reaches into the pixels ends there.
BmpHeader ReadBmpHeader(ByteView file, std::int64_t maxPixels);

}  // namespace marovia
