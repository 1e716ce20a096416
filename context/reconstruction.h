// What a coefficient is taken for whose lower bits are not known.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "context/context_bands.h"
#include "context/counters.h"

namespace marovia {

// Bit 0: not yet refined in the plane where decoding ended; bit 1: never refined.
constexpr std::size_t PrecisionOf(bool old, int known) {
  const bool neverRefined = known == 1 || (old && known == kFirstRefinement);
  return (old ? 1U : 0U) | (neverRefined ? 2U : 0U);
}

// The width of what is not known is that of the lowest plane, or of the one above it. A found
// coefficient is put at 13/32 of it, one that was refined at 15/32: small ones are more frequent.
constexpr std::array<std::int32_t, 4> AddedByPrecision(int lowestPlane) {
  std::array<std::int32_t, 4> added{};
  for (std::size_t i = 0; i < added.size(); ++i) {
    const std::int64_t width = std::int64_t{1} << (lowestPlane + ((i & 1) != 0 ? 1 : 0));
    added[i] = static_cast<std::int32_t>(width * ((i & 2) != 0 ? 13 : 15) >> 5);
  }
  return added;
}

struct Reconstruction {
  int highest = 0;                      // the planes that were coded for a band,
  int lowest = 0;                       // as far as decoding came
  std::array<std::int32_t, 4> added{};  // to what they hold, before it is shifted
  int shift = 0;
  std::int32_t mean = 0;  // added to the low band in the end
};

// After decoding ended in `plane`, or with all of them at 0.
inline Reconstruction ReconstructionOf(const ContextBand& band, const ContextHeader& header,
                                       int plane) {
  const int lowest = std::max(plane, band.shift);
  return {header.planes - 1, lowest, AddedByPrecision(lowest), band.shift,
          band.kind == BandKind::kLow ? header.mean : 0};
}

}  // namespace marovia
