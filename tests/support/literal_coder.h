// The whole codec written a second time, as plainly as it can be said: every pass walks every
// position along the links. What the library does fast must come out the same here. It codes
// sides as they are, and decodes padded ones too.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "marovia/codec.h"
#include "marovia/grid.h"
#include "marovia/image.h"

namespace marovia::literal {

struct Settings {
  FileKind kind = FileKind::kAwf;
  WaveletKind wavelet = WaveletKind::kInteger53;
  int levels = 1;   // held to the limit of the sides
  double rate = 1;  // bits per pixel; ignored by kAwg
  std::optional<Region> region;
  float share = 0.9F;
};

struct Encoded {
  Bytes file;
  std::vector<PassReport> passes;  // one a pass, then one more of the end
  int levels = 0;
  float mean = 0;
  int exponent = 0;
};

// Errors kInvalidArgument (levels below 1, sides below 3) and kOverflow.
Encoded Compress(const Image& image, const Settings& settings);

struct Decoded {
  Image image;
  std::vector<PassReport> passes;
  bool missingBits = false;  // decoding ended because the file did; a complete file may end so too
};

// Errors kMalformed (no header, or one that cannot be) and kOverflow.
Decoded Decompress(ByteView file, FileKind kind, double rate);

// Below: what the two directions share.

inline constexpr int kMostPasses = 32;

bool IsAdaptive(FileKind kind);

// The test at the end of a pass of the coders that have a budget.
bool LoopTest(WaveletKind wavelet, int pass, float threshold);

// Whether the run ends with this pass.
bool PassesEnd(FileKind kind, WaveletKind wavelet, int pass, float threshold);

// 1 for the coefficients that the region needs, 0 for the others.
Grid<std::int16_t> GetROIValues(const Image& image, WaveletKind wavelet, int levels,
                                const Region& region);

}  // namespace marovia::literal
