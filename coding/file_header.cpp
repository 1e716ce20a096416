#include "coding/file_header.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <string>

#include "marovia/error.h"

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

std::string Text(Sides sides) {
  return std::to_string(sides.rows) + " x " + std::to_string(sides.cols);
}

constexpr int kPaddedMark = 128;
constexpr int kThirteenLevels = 131;  // of 9/7

int LevelByte(const FileHeader& header) {
  return 10 * header.levels + static_cast<int>(header.wavelet) + (header.padded ? kPaddedMark : 0);
}

// Images of half a gigapixel bear 13 levels of 9/7. Their byte is also that of a padded image of 0
// levels, but only sides of 1 and 2 are padded to 0 levels.
bool IsMarked(int levelByte, Sides sides) {
  if (levelByte == kThirteenLevels) return PaddedSides(sides, 0) != sides;
  return levelByte >= kPaddedMark;
}

void CheckPadding(const FileHeader& header) {
  const Sides coded = header.CodedSides();
  if (coded == header.sides) {
    Malformed("its size of " + Text(header.sides) + " needs no padding, but is marked as padded.");
  }
  if (std::max(coded.rows, coded.cols) > kMostSide) {
    Malformed("its padded size is " + Text(coded) + ".");
  }
}

void Check(const FileHeader& header, int waveletNumber) {
  if (waveletNumber < 1 || waveletNumber > 3) {
    Malformed("there is no wavelet " + std::to_string(waveletNumber) + ".");
  }
  if (header.sides.rows < 1 || header.sides.cols < 1) {
    Malformed("its size is " + Text(header.sides) + ".");
  }
  if (header.padded) CheckPadding(header);
  if (header.exponent > kMostExponent) {
    Malformed("its first threshold is 2^" + std::to_string(header.exponent) + ".");
  }
  if (!std::isfinite(header.mean)) Malformed("its mean is not a number.");
}

std::int32_t CheckedBits(double bits, double rate, Sides sides) {
  constexpr double kMost = std::numeric_limits<std::int32_t>::max();
  if (!(std::fabs(bits) <= kMost)) {
    Fail(Errc::kOverflow, "Overflow:" + NumberText(rate) + " bits per pixel of " + Text(sides) +
                              " do not fit 32 bits.");
  }
  return static_cast<std::int32_t>(bits);
}

}  // namespace

Bytes WriteHeader(const FileHeader& header) {
  Bytes file;
  file.reserve(HeaderSize(true));
  if (header.budget) Append(file, static_cast<std::uint32_t>(*header.budget), 4);
  file.push_back(ToByte(LevelByte(header)));
  Append(file, static_cast<std::uint32_t>(ToInt16(header.sides.rows)), 2);
  Append(file, static_cast<std::uint32_t>(ToInt16(header.sides.cols)), 2);
  Append(file, std::bit_cast<std::uint32_t>(header.mean), 4);
  file.push_back(ToByte(header.exponent));
  return file;
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
  const int levelByte = static_cast<int>(fields.Take(1));
  header.sides.rows = fields.TakeInt16();
  header.sides.cols = fields.TakeInt16();
  header.padded = IsMarked(levelByte, header.sides);
  const int levelsAndWavelet = levelByte - (header.padded ? kPaddedMark : 0);
  header.levels = levelsAndWavelet / 10;
  header.wavelet = static_cast<WaveletKind>(levelsAndWavelet % 10);
  header.mean = std::bit_cast<float>(fields.Take(4));
  header.exponent = static_cast<int>(fields.Take(1));
  Check(header, levelsAndWavelet % 10);
  return header;
}

std::int32_t BitBudget(double rate, Sides sides) {
  const double pixels = static_cast<double>(sides.rows) * sides.cols;
  return CheckedBits(RoundHalfEven(rate * pixels), rate, sides);
}

std::int32_t BitBudgetOfRows(double rate, Sides sides) {
  return CheckedBits(RoundHalfEven(rate * sides.cols) * sides.rows, rate, sides);
}

BudgetChoice SetBitBudget(std::int32_t stored, std::int32_t requested) {
  return {std::min(stored, requested), stored < requested};
}

}  // namespace marovia
