// The coefficients of an image as a compressor's passes ask for them.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "coding/home_set.h"

namespace marovia {

// Thresholds are powers of two, so every comparison of a pass is a test of one bit. With the first
// threshold 2^n a magnitude is kept as the fraction m / 2^32 of 2^n, what lies below dropped. Pass
// k has the threshold 2^(n-k): it finds the coefficients whose leading one is bit 32 - k of m, and
// its refinement of those found before is that very bit.
class BitPlanes {
 public:
  // coefficients[positions[h]] becomes home h. Every magnitude is below 2^exponent.
  BitPlanes(std::span<const float> coefficients, std::span<const std::uint32_t> positions,
            int exponent);

  [[nodiscard]] std::size_t HomeCount() const { return magnitudes_.size(); }
  [[nodiscard]] bool Negative(Home home) const { return (passes_[home] & kNegative) != 0; }
  // Whether a coefficient found before `pass` moves away from 0 in it.
  [[nodiscard]] bool Moves(Home home, int pass) const {
    return (magnitudes_[home] >> (32 - pass) & 1) != 0;
  }
  // The homes that pass number `pass` finds.
  void FoundIn(int pass, HomeSet& homes) const;

 private:
  static constexpr std::uint8_t kNegative = 0x80;

  std::vector<std::uint8_t> passes_;  // the pass that finds a home, 33 for none; and the sign
  std::vector<std::uint32_t> magnitudes_;
};

}  // namespace marovia
