// The header of a compressed file, and the bits that its stream may hold.
//
//   bytes  field, little-endian
//   4      bits that the compressor might spend, the header's charge included (not in lossless
//   files) 1      10 * levels + the wavelet's number 2, 2   rows, columns of the coded image 4 mean
//   that was taken off the low band, IEEE 754 single precision 1      n: the first threshold is 2^n
//
// A coder charges its header a fixed number of bits before the first bit of the stream, more than
// the header has; file lengths depend on it.
#pragma once

#include <cstdint>
#include <optional>

#include "marovia/codec.h"

namespace marovia {

struct FileHeader {
  std::optional<std::int32_t> budget;
  int levels = 0;
  WaveletKind wavelet = WaveletKind::kDaub97;
  int rows = 0;
  int cols = 0;
  float mean = 0;
  int exponent = 0;
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
constexpr int kMostSide = 32767;

// The fields in the order of the file.
void AppendBudget(Bytes& file, std::int32_t budget);
void AppendGeometry(Bytes& file, int levels, WaveletKind wavelet, int rows, int cols);
void AppendMean(Bytes& file, float mean);
void AppendExponent(Bytes& file, int exponent);

constexpr std::size_t HeaderSize(bool hasBudget) {
  return hasBudget ? 14 : 10;
}

// Error kMalformed where the file is shorter than its header or a field holds what no compressor
// writes: a wavelet that is not there, a side below 1, more than 2^31 for a first threshold, a mean
// that is not a number. Whether the sides allow the levels is for the caller to judge.
FileHeader ReadHeader(ByteView file, bool hasBudget);

// The budget of an image at `rate` bits per pixel: the bits of a row, rounded half to even, times
// the rows. Error kOverflow where that leaves 32 bits.
std::int32_t BitBudget(double rate, int rows, int cols);

struct BudgetChoice {
  std::int32_t bits;
  bool held;  // the rate asked for more than the file was made with
};

// What a decompressor may read of a file with this budget.
BudgetChoice SetBitBudget(std::int32_t stored, double rate, int rows, int cols);

}  // namespace marovia
