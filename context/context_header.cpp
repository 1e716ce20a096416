#include "context/context_header.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <string>

#include "base/little_endian.h"
#include "base/number_text.h"

namespace marovia {
namespace {

constexpr std::array<std::uint8_t, 4> kMagic = {0x61, 0x77, 0x68, 0x1A};
constexpr int kVersion = 1;
constexpr int kMostLevels = 12;
constexpr std::int64_t kMeanLimit = std::int64_t{1} << 26;

[[noreturn]] void Malformed(const std::string& what) {
  Fail(Errc::kMalformed, "Not a file of ours: " + what);
}

std::string SidesText(const ContextHeader& header) {
  return SizeText(header.rows, header.cols);
}

void CheckFields(const ContextHeader& header) {
  const int wavelet = static_cast<int>(header.wavelet);
  if (wavelet < 1 || wavelet > 3) {
    Malformed("there is no wavelet " + std::to_string(wavelet) + ".");
  }
  if (header.rows < 1 || header.cols < 1) Malformed("its size is " + SidesText(header) + ".");
  if (header.levels > ContextLevelLimit(header.rows, header.cols)) {
    Malformed("an image of " + SidesText(header) + " cannot have " + std::to_string(header.levels) +
              " levels.");
  }
  if (header.planes > kMostContextPlanes) {
    Malformed("it has " + std::to_string(header.planes) + " bit planes.");
  }
  if (std::abs(std::int64_t{header.mean}) >= kMeanLimit) {
    Malformed("its mean is " + std::to_string(header.mean) + ".");
  }
}

void CheckPixels(const ContextHeader& header, std::int64_t maxPixels) {
  const std::int64_t pixels = std::int64_t{header.rows} * header.cols;
  if (pixels <= maxPixels) return;
  Fail(Errc::kLimit, "The image has " + SidesText(header) + " = " + std::to_string(pixels) +
                         " pixels; the limit is " + std::to_string(maxPixels) + ".");
}

}  // namespace

bool BeginsContextFile(ByteView file) {
  return file.size() >= kMagic.size() && std::equal(kMagic.begin(), kMagic.end(), file.begin());
}

int ContextLevelLimit(int rows, int cols) {
  const auto smaller = static_cast<unsigned>(std::min(rows, cols));
  return std::clamp(static_cast<int>(std::bit_width(smaller)) - 3, 0, kMostLevels);
}

void CheckContextSides(const ContextHeader& header) {
  const int longest = std::max(header.rows, header.cols);
  if (longest > kMostContextSide) {
    Fail(Errc::kLimit, "A side of " + std::to_string(longest) + " exceeds " +
                           std::to_string(kMostContextSide) + ", the most that a file can hold.");
  }
  if (header.Cells() > kMostContextCells) {
    Fail(Errc::kLimit, "The image of " + SidesText(header) + " has " +
                           std::to_string(header.Cells()) + " coefficients; an awh can hold " +
                           std::to_string(kMostContextCells) + ".");
  }
}

void AppendContextHeader(Bytes& file, const ContextHeader& header) {
  file.insert(file.end(), kMagic.begin(), kMagic.end());
  AppendLittleEndian(file, kVersion, 1);
  AppendLittleEndian(file, static_cast<std::uint32_t>(header.wavelet), 1);
  AppendLittleEndian(file, static_cast<std::uint32_t>(header.levels), 1);
  AppendLittleEndian(file, static_cast<std::uint32_t>(header.planes), 1);
  AppendLittleEndian(file, static_cast<std::uint32_t>(header.rows), 2);
  AppendLittleEndian(file, static_cast<std::uint32_t>(header.cols), 2);
  AppendLittleEndian(file, static_cast<std::uint32_t>(header.mean), 4);
}

ContextHeader ReadContextHeader(ByteView file, std::int64_t maxPixels) {
  if (file.size() < kContextHeaderBytes) {
    Malformed("it has " + std::to_string(file.size()) + " bytes, and the header alone has " +
              std::to_string(kContextHeaderBytes) + ".");
  }
  if (!BeginsContextFile(file)) {
    Malformed("it does not begin with the bytes 61 77 68 1A.");
  }
  if (file[4] != kVersion) Malformed("its version is " + std::to_string(file[4]) + ".");
  const ContextHeader header{.wavelet = static_cast<WaveletKind>(file[5]),
                             .levels = file[6],
                             .planes = file[7],
                             .rows = static_cast<int>(LittleEndian(file.subspan(8, 2))),
                             .cols = static_cast<int>(LittleEndian(file.subspan(10, 2))),
                             .mean = static_cast<std::int32_t>(LittleEndian(file.subspan(12, 4)))};
  CheckFields(header);
  CheckPixels(header, maxPixels);
  CheckContextSides(header);
  return header;
}

}  // namespace marovia
