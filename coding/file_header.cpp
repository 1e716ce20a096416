#include "coding/file_header.h"

#include <bit>
#include <cmath>
#include <limits>
#include <string>

#include "base/checked.h"
#include "base/number_text.h"

namespace marovia {
namespace {

void Append(Bytes& file, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) file.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

class FieldReader {
 public:
  explicit FieldReader(ByteView file) : file_(file) {}

  std::uint32_t Take(int count) {
    std::uint32_t value = 0;
    for (int i = 0; i < count; ++i) value |= std::uint32_t{file_[next_++]} << (8 * i);
    return value;
  }
  std::int32_t TakeInt32() { return static_cast<std::int32_t>(Take(4)); }
  int TakeInt16() { return static_cast<std::int16_t>(Take(2)); }

 private:
  ByteView file_;
  std::size_t next_ = 0;
};

[[noreturn]] void Malformed(const std::string& what) {
  Fail(Errc::kMalformed, "Not a file of ours: " + what);
}

void Check(const FileHeader& header, int waveletNumber) {
  if (waveletNumber < 1 || waveletNumber > 3) {
    Malformed("there is no wavelet " + std::to_string(waveletNumber) + ".");
  }
  if (header.rows < 1 || header.cols < 1) {
    Malformed("its size is " + std::to_string(header.rows) + " x " + std::to_string(header.cols) +
              ".");
  }
  if (header.exponent > kMostExponent) {
    Malformed("its first threshold is 2^" + std::to_string(header.exponent) + ".");
  }
  if (!std::isfinite(header.mean)) Malformed("its mean is not a number.");
}

}  // namespace

void AppendBudget(Bytes& file, std::int32_t budget) {
  Append(file, static_cast<std::uint32_t>(budget), 4);
}

void AppendGeometry(Bytes& file, int levels, WaveletKind wavelet, int rows, int cols) {
  file.push_back(ToByte(10 * levels + static_cast<int>(wavelet)));
  Append(file, static_cast<std::uint32_t>(ToInt16(rows)), 2);
  Append(file, static_cast<std::uint32_t>(ToInt16(cols)), 2);
}

void AppendMean(Bytes& file, float mean) {
  Append(file, std::bit_cast<std::uint32_t>(mean), 4);
}

void AppendExponent(Bytes& file, int exponent) {
  file.push_back(ToByte(exponent));
}

FileHeader ReadHeader(ByteView file, bool hasBudget) {
  const std::size_t size = HeaderSize(hasBudget);
  if (file.size() < size) {
    Malformed("it has " + std::to_string(file.size()) + " bytes, and the header alone has " +
              std::to_string(size) + ".");
  }
  FieldReader fields(file);
  FileHeader header;
  if (hasBudget) header.budget = fields.TakeInt32();
  const int levelsAndWavelet = static_cast<int>(fields.Take(1));
  header.levels = levelsAndWavelet / 10;
  header.wavelet = static_cast<WaveletKind>(levelsAndWavelet % 10);
  header.rows = fields.TakeInt16();
  header.cols = fields.TakeInt16();
  header.mean = std::bit_cast<float>(fields.Take(4));
  header.exponent = static_cast<int>(fields.Take(1));
  Check(header, levelsAndWavelet % 10);
  return header;
}

std::int32_t BitBudget(double rate, int rows, int cols) {
  const double bitsOfARow = RoundHalfEven(cols * rate);
  constexpr double kMost = std::numeric_limits<std::int32_t>::max();
  if (!(std::fabs(bitsOfARow * rows) <= kMost)) {
    Fail(Errc::kOverflow, "Overflow:" + NumberText(rate) + " bits per pixel of " +
                              std::to_string(rows) + " x " + std::to_string(cols) +
                              " do not fit 32 bits.");
  }
  return static_cast<std::int32_t>(bitsOfARow) * rows;
}

BudgetChoice SetBitBudget(std::int32_t stored, double rate, int rows, int cols) {
  const std::int32_t requested = BitBudget(rate, rows, cols);
  if (stored < requested) return {stored, true};
  return {requested, false};
}

}  // namespace marovia
