#include "coding/bit_planes.h"

#include <bit>
#include <cmath>
#include <cstring>

namespace marovia {
namespace {

// The bytes of a block of 64 that equal `wanted` when their top bits are left out, as one bit each.
// Eight at a time: a byte of `difference` is 0 just where it equals; adding 0x7F carries into its
// top bit everywhere else, and the multiplication gathers the eight top bits in one byte.
std::uint64_t EqualBytes(const std::uint8_t* bytes, std::uint8_t wanted) {
  constexpr std::uint64_t kOnes = 0x0101010101010101U;
  constexpr std::uint64_t kLow = 0x7F * kOnes;
  constexpr std::uint64_t kGather = 0x0102040810204080U;
  std::uint64_t mask = 0;
  for (int i = 0; i < 8; ++i) {
    std::uint64_t word = 0;
    for (int j = 0; j < 8; ++j) word |= std::uint64_t{bytes[8 * i + j]} << (8 * j);
    const std::uint64_t difference = (word & kLow) ^ (wanted * kOnes);
    const std::uint64_t equal = (~(difference + kLow) >> 7) & kOnes;
    mask |= (equal * kGather) >> 56 << (8 * i);
  }
  return mask;
}

}  // namespace

BitPlanes::BitPlanes(std::span<const float> coefficients, std::span<const std::uint32_t> positions,
                     int exponent)
    : passes_((positions.size() / 64 + 1) * 64, 33), magnitudes_(positions.size()) {
  const float scale = std::ldexp(1.0F, 32 - exponent);
  for (std::size_t home = 0; home < positions.size(); ++home) {
    const float coefficient = coefficients[positions[home]];
    const auto magnitude =
        static_cast<std::uint32_t>(static_cast<std::int64_t>(std::fabs(coefficient) * scale));
    magnitudes_[home] = magnitude;
    passes_[home] = static_cast<std::uint8_t>(std::countl_zero(magnitude) + 1 +
                                              (std::signbit(coefficient) ? kNegative : 0));
  }
}

void BitPlanes::FoundIn(int pass, HomeSet& homes) const {
  for (std::size_t i = 0; i < homes.WordCount(); ++i) {
    homes.Word(i) = EqualBytes(&passes_[64 * i], static_cast<std::uint8_t>(pass));
  }
}

}  // namespace marovia
