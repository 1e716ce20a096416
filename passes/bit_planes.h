// The coefficients of an image as a compressor's passes ask for them.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

#include "marovia/grid.h"

#include "passes/homes.h"

namespace marovia {

// Thresholds are powers of two, so every comparison of a pass is a test of a bit. With the first
// threshold 2^n, pass k has the threshold 2^(n-k) and finds the coefficients whose exponent is n -
// k; each later pass refines them by the next bit of their mantissa, which ends after 23.
class BitPlanes {
 public:
  // The values of the homes, every magnitude below 2^exponent.
  BitPlanes(Buffer<float> homes, int exponent, int threads);

  [[nodiscard]] std::size_t HomeCount() const { return homes_.size(); }
  [[nodiscard]] bool Negative(Home home) const { return std::signbit(homes_[home]); }
  // Whether a coefficient found before `pass` moves away from 0 in it.
  [[nodiscard]] bool Moves(Home home, int pass) const {
    const auto bits = std::bit_cast<std::uint32_t>(homes_[home]);
    const int place = kMantissaBits + base_ - pass - static_cast<int>(bits >> kMantissaBits & 0xFF);
    return place >= 0 && (bits >> place & 1) != 0;
  }
  // All of that at once, for a coefficient that is found: bit kRefinementPlace - k says it of pass
  // k.
  static constexpr int kRefinementPlace = 33;
  [[nodiscard]] std::uint32_t Refinements(Home home) const {
    return std::bit_cast<std::uint32_t>(homes_[home]) << (32 - kMantissaBits) >>
           (passes_[home] - 1);
  }
  // The homes that pass number `pass` finds.
  void FoundIn(int pass, HomeSet& homes) const;

 private:
  void FindIn(std::size_t firstWord, std::size_t lastWord);

  static constexpr int kMantissaBits = 23;

  Buffer<float> homes_;
  int base_;                       // what pass and biased exponent of a coefficient add up to
  Buffer<std::uint8_t> passes_;    // the pass that finds a home, 255 for none; padded to 64
  Buffer<std::uint8_t> earliest_;  // of 64 homes each, those of a word of a set
};

}  // namespace marovia
