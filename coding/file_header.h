// The header of a compressed file, and the bits that its stream may hold.
//
//   bytes  field, little-endian
//   4      bits that the compressor might spend, the header's charge included; not in lossless
//          files
//   1      10 * levels + the wavelet's number, and 128 more where the image was padded
//   2, 2   rows and columns of the image
//   4      mean that was taken off the low band, IEEE 754 single precision
//   1      n: the first threshold is 2^n
//
// A coder charges its header a fixed number of bits before the first bit of the stream, more than
// the header has; file lengths depend on it.
#pragma once

#include <cstdint>
#include <optional>

#include "marovia/image.h"
#include "marovia/types.h"

#include "coding/sides.h"

namespace marovia {

struct FileHeader {
  std::optional<std::int32_t> budget = {};  // none in lossless files
  int levels = 0;
  WaveletKind wavelet = WaveletKind::kDaub97;
  Sides sides = {};     // of the image
  bool padded = false;  // the sides did not fit the levels: what is coded are CodedSides
  float mean = 0;
  int exponent = 0;

  [[nodiscard]] Sides CodedSides() const { return padded ? PaddedSides(sides, levels) : sides; }
};

constexpr int SetBitTotal() {
  return 120;
}  // raw bits
constexpr int SetBitTotal_WDR_AC() {
  return 136;
}  // WDR, arithmetic
constexpr int SetBitTotal_ASWDR() {
  return 128;
}  // ASWDR, arithmetic
constexpr int kBudgetBits = 32;  // what a lossless header lacks

constexpr int kMostExponent = 31;
// The most levels whose byte has room for the mark of padding.
constexpr int kMostPaddedLevels = 12;

constexpr std::size_t HeaderSize(bool hasBudget) {
  return hasBudget ? 14 : 10;
}

// Error kOverflow where a field does not fit.
Bytes WriteHeader(const FileHeader& header);

// Error kMalformed where the file is shorter than its header or a field holds what no compressor
// writes: a wavelet that is not there, a side below 1, the mark of padding where the sides fit or
// where a padded one exceeds kMostSide, more than 2^31 for a first threshold, a mean that is not a
// number. Whether the sides allow the levels is for the caller to judge.
FileHeader ReadHeader(ByteView file, bool hasBudget);

// The budget of an image at `rate` bits per pixel, rounded half to even. Error kOverflow where that
// leaves 32 bits.
std::int32_t BitBudget(double rate, Sides sides);
// The same as the bits of a row, rounded half to even, times the rows.
std::int32_t BitBudgetOfRows(double rate, Sides sides);

struct BudgetChoice {
  std::int32_t bits;
  bool held;  // more was asked for than the file was made with
};

// What a decompressor that is asked for `requested` bits may read of a file with this budget.
BudgetChoice SetBitBudget(std::int32_t stored, std::int32_t requested);

}  // namespace marovia
