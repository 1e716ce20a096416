// What every part of the codec speaks of: kinds of files, wavelets, regions, reports.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>

#include "marovia/export.h"

namespace marovia {

// The numbers are part of the file format.
enum class WaveletKind : std::int16_t {
  kDaub97 = 1,     // "Daub 9/7": floating point, the best pictures at a given rate
  kInteger53 = 2,  // "DD 5/3 Integer": exactly invertible
  kInteger22 = 3,  // "DD 2+2,2 Integer": exactly invertible, one more lifting step
};

// What a compressed file holds; its extension names it. Inside, nothing does but in kAwh.
enum class FileKind {
  kAwb,  // WDR, raw bits
  kAwa,  // WDR, arithmetic coding
  kAwd,  // ASWDR, raw bits
  kAwf,  // ASWDR, arithmetic coding
  kAwg,  // ASWDR, arithmetic coding, lossless
  kAwc,  // ASWDR, second version, raw bits
  kAwh,  // context coding: lossy or lossless, and made shorter by cutting it
};

// All of them, in the order of their numbers.
MAROVIA_API std::span<const FileKind> AllKinds();

// "awb" ... "awh", and back (lower case, without a point).
MAROVIA_API std::string_view Extension(FileKind kind);
MAROVIA_API std::optional<FileKind> KindOfExtension(std::string_view extension);

// The longest side that a file can hold, and a kAwh, whose padded sides may have a product of 2^26.
inline constexpr int kMostSide = 32767;
inline constexpr int kMostSideOfAwh = 65535;

// Rows row1 to row2 and columns col1 to col2 of an image, all included, from 0.
struct Region {
  int row1 = 0;
  int col1 = 0;
  int row2 = 0;
  int col2 = 0;
};

// The state of a run after a pass over one bit plane.
struct PassReport {
  int pass = 0;                  // 1 for the first
  float threshold = 0;           // a power of two, half that of the pass before
  std::int32_t significant = 0;  // coefficients found so far
  std::int32_t bits = 0;         // bits written or read so far, the header's charge included
};

using PassListener = std::function<void(const PassReport&)>;

}  // namespace marovia
