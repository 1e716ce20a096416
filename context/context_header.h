// The first bytes of a context-coded file. It has no budget: a file is made shorter by cutting it.
//
//   bytes  field, little-endian
//   4      61 77 68 1A
//   1      version, 1
//   1      the wavelet's number
//   1      levels
//   1      planes: the bits of the largest scaled magnitude
//   2, 2   rows, columns of the image
//   4      mean that was taken off the low band, signed, in units of a coefficient
#pragma once

#include <cstdint>

#include "marovia/error.h"
#include "marovia/image.h"
#include "marovia/types.h"

namespace marovia {

inline constexpr std::size_t kContextHeaderBytes = 16;
inline constexpr int kMostContextSide = 65535;
inline constexpr std::int64_t kMostContextCells = std::int64_t{1} << 26;
inline constexpr int kMostContextPlanes = 26;

struct ContextHeader {
  WaveletKind wavelet = WaveletKind::kDaub97;
  int levels = 0;
  int planes = 0;
  int rows = 0;
  int cols = 0;
  std::int32_t mean = 0;

  // The sides rounded up to multiples of 2^levels.
  [[nodiscard]] int PaddedRows() const { return Padded(rows); }
  [[nodiscard]] int PaddedCols() const { return Padded(cols); }
  [[nodiscard]] std::int64_t Cells() const { return std::int64_t{PaddedRows()} * PaddedCols(); }

 private:
  [[nodiscard]] int Padded(int side) const { return ((side - 1) | ((1 << levels) - 1)) + 1; }
};

// Whether a file begins with the four bytes that name it.
bool BeginsContextFile(ByteView file);

// The most levels that sides bear: 12, and three fewer than the bits of the smaller side, so that
// padding adds little.
int ContextLevelLimit(int rows, int cols);

// Error kLimit where the sides, or the cells of the padded picture, are more than a file can hold.
void CheckContextSides(const ContextHeader& header);

void AppendContextHeader(Bytes& file, const ContextHeader& header);

// Error kMalformed where the file is shorter or a field holds what no compressor writes; kLimit
// where the image has more than maxPixels pixels.
ContextHeader ReadContextHeader(ByteView file, std::int64_t maxPixels = kDefaultMaxPixels);

}  // namespace marovia
