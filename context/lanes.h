// What the passes do to 64 cells at once, for any processor. wide_lanes.h has the same for one with
// wider vectors.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

#include "base/bits.h"
#include "context/counters.h"
#include "context/reconstruction.h"

namespace marovia {

// For each cell of a block the place of its refinement counter: with the known values as they are,
// and with that to the left grown by one.
struct RefinementPlaces {
  alignas(64) std::array<std::uint8_t, 64> asItIs;
  alignas(64) std::array<std::uint8_t, 64> besideGrown;
};

// 64 cells of a reader.
struct ReadBlock {
  const std::uint64_t* planes;  // word of plane 0, the others `stride` further on each
  std::size_t stride;
  std::uint64_t old;
  const std::uint8_t* known;
  const std::int8_t* sign;
};

struct PlainLanes {
  // The cells whose byte is at least `least`, which is at most 128; bytes are below 128.
  static std::uint64_t AtLeast(const std::uint8_t* bytes, int least) {
    constexpr std::uint64_t kOnes = ~std::uint64_t{0} / 255;
    const std::uint64_t complement = kOnes * static_cast<std::uint64_t>(128 - least);
    std::uint64_t mask = 0;
    for (int i = 0; i < 64; i += 8) {
      const std::uint64_t reached = (EightBytes(bytes + i) + complement) >> 7 & kOnes;
      mask |= (reached * 0x0102040810204080U >> 56) << i;  // gathers one bit of each byte
    }
    return mask;
  }

  static void DoubleKnown(std::uint8_t* known) {
    for (int i = 0; i < 64; ++i) {
      known[i] = static_cast<std::uint8_t>(std::min(2 * known[i], kMostKnown));
    }
  }

  static void AddBits(std::uint8_t* bytes, std::uint64_t mask) {
    for (; mask != 0; mask &= mask - 1) ++bytes[std::countr_zero(mask)];
  }

  static void FindPlaces(const std::uint8_t* known, std::ptrdiff_t pitch,
                         RefinementPlaces& places) {
    const std::uint8_t* above = known - pitch;
    const std::uint8_t* below = known + pitch;
    for (int i = 0; i < 64; ++i) {
      const int straight = above[i] + below[i] + known[i - 1] + known[i + 1];
      const int slanting = above[i - 1] + above[i + 1] + below[i - 1] + below[i + 1];
      const int sum = 2 * straight + slanting;
      const auto at = static_cast<std::size_t>(i);
      places.asItIs[at] = PlaceOf(known[i], sum);
      places.besideGrown[at] = PlaceOf(known[i], sum + 2);
    }
  }

  // Bytes t of eight words as one word each, the first word's lowest.
  static void TilesOf(const std::uint64_t* words, std::array<std::uint64_t, 8>& tiles) {
    for (std::size_t t = 0; t < 8; ++t) {
      tiles[t] = 0;
      for (std::size_t r = 0; r < 8; ++r) tiles[t] |= (words[r] >> (8 * t) & 0xFF) << (8 * r);
    }
  }

  // The same of the complement; whether anything is set in it.
  static bool TilesOfOpen(const std::uint64_t* closed, std::array<std::uint64_t, 8>& tiles) {
    std::array<std::uint64_t, 8> open{};
    std::uint64_t any = 0;
    for (std::size_t r = 0; r < 8; ++r) any |= open[r] = ~closed[r];
    if (any != 0) TilesOf(open.data(), tiles);
    return any != 0;
  }

  // Cuts 64 values, times 2^shift, into the bit planes of their magnitudes, of which it writes
  // those that are not empty, and their signs. Returns all magnitudes or'ed.
  static std::uint32_t Cut(const std::int32_t* values, int shift, std::uint64_t* planes,
                           std::size_t stride, std::uint64_t& negative) {
    std::uint32_t all = 0;
    for (int i = 0; i < 64; ++i) {
      const std::uint64_t bit = std::uint64_t{1} << i;
      const auto sign = static_cast<std::uint32_t>(values[i] >> 31);
      const std::uint32_t magnitude = ((static_cast<std::uint32_t>(values[i]) ^ sign) - sign)
                                      << shift;
      if (values[i] < 0) negative |= bit;
      all |= magnitude;
      for (std::uint32_t rest = magnitude; rest != 0; rest &= rest - 1) {
        planes[static_cast<std::size_t>(std::countr_zero(rest)) * stride] |= bit;
      }
    }
    return all;
  }

  // The values of 64 cells, 0 where nothing was found.
  static void Join(const ReadBlock& block, const Reconstruction& how, std::int32_t* values) {
    for (int i = 0; i < 64; ++i) values[i] = block.sign[i] == 0 ? 0 : ValueOf(block, how, i);
  }

 private:
  static std::uint64_t EightBytes(const std::uint8_t* bytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
    return word;
  }

  static std::uint8_t PlaceOf(int known, int sum) {
    if (known >= kMostKnown) return kEvenPlace;
    int place = known == kFirstRefinement ? 0 : 8;
    for (const int bound : kKnownBounds) place += bound <= sum ? 1 : 0;
    return static_cast<std::uint8_t>(place);
  }

  static std::int32_t ValueOf(const ReadBlock& block, const Reconstruction& how, int i) {
    std::int32_t value = 0;
    for (int plane = how.highest; plane >= how.lowest; --plane) {
      const std::uint64_t word = block.planes[static_cast<std::size_t>(plane) * block.stride];
      value |= static_cast<std::int32_t>(word >> i & 1) << plane;
    }
    const std::size_t precision = PrecisionOf((block.old >> i & 1) != 0, block.known[i]);
    value = (value + how.added[precision]) >> how.shift;
    return block.sign[i] * value;
  }
};

}  // namespace marovia
