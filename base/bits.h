// Counting bits with what every processor has, and loops compiled for wider ones as well.
#pragma once

#include <cstdint>

namespace marovia {

// The leading zeros of a value that is not 0.
inline int LeadingZeros(std::uint32_t value) {
  return __builtin_clz(value);
}

// The bits set in a word. Without an instruction for it, in parallel sums of 2, 4 and 8 bits.
inline int CountBits(std::uint64_t word) {
#ifdef __POPCNT__
  return __builtin_popcountll(word);
#else
  constexpr std::uint64_t kOnes = ~std::uint64_t{0};
  word -= (word >> 1) & (kOnes / 3);
  word = (word & (kOnes / 5)) + ((word >> 2) & (kOnes / 5));
  word = (word + (word >> 4)) & (kOnes / 17);
  return static_cast<int>((word * (kOnes / 255)) >> 56);
#endif
}

}  // namespace marovia

// Compiles a function once more for processors with 256-bit vectors; which one runs is decided when
// the program starts. Results are the same: no multiply-add is fused. Such a function must not
// throw (its callers are compiled as if it could not), and sanitizers cannot follow the choice,
// which is made before they are ready.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && \
    !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define MAROVIA_WIDE_VECTORS [[gnu::target_clones("avx2", "default")]]
#else
#define MAROVIA_WIDE_VECTORS
#endif
