// Counting bits with what every processor has, and what the compiler is told of hot loops.
#pragma once

#include <cstdint>

// For what a loop over symbols is made of: called, it would need the address of the coder, which
// then could not stay in registers.
#define MAROVIA_INLINE [[gnu::always_inline]] inline
#define MAROVIA_INLINE_LAMBDA __attribute__((always_inline))

namespace marovia {

// The leading zeros of a value that is not 0.
inline int LeadingZeros(std::uint32_t value) {
  return __builtin_clz(value);
}

// Byte i holds the number of bits set in the bytes 0 to i of a word.
inline std::uint64_t RunningByteCounts(std::uint64_t word) {
  constexpr std::uint64_t kAll = ~std::uint64_t{0};
  word -= (word >> 1) & (kAll / 3);
  word = (word & (kAll / 5)) + ((word >> 2) & (kAll / 5));
  word = (word + (word >> 4)) & (kAll / 17);
  return word * (kAll / 255);
}

// The bits set in a word.
inline int CountBits(std::uint64_t word) {
#ifdef __POPCNT__
  return __builtin_popcountll(word);
#else
  return static_cast<int>(RunningByteCounts(word) >> 56);
#endif
}

// The place of the n-th bit set in a word, n from 1 to their number.
inline int PlaceOfBit(std::uint64_t word, int n) {
  constexpr std::uint64_t kOnes = ~std::uint64_t{0} / 255;
  const std::uint64_t counts = RunningByteCounts(word);
  // A byte's top bit stays where its count is n or more: no count exceeds 64.
  const std::uint64_t reached =
      ((counts | 128 * kOnes) - static_cast<std::uint64_t>(n) * kOnes) & (128 * kOnes);
  const int shift = __builtin_ctzll(reached) - 7;
  n -= static_cast<int>((counts << 8) >> shift & 0xFF);
  std::uint64_t rest = word >> shift;
  for (; n > 1; --n) rest &= rest - 1;
  return shift + __builtin_ctzll(rest);
}

// The lowest `count` bits, at most 16, the other way round.
inline std::uint32_t ReverseBits(std::uint32_t bits, int count) {
  bits = (bits >> 1 & 0x5555U) | (bits & 0x5555U) << 1;
  bits = (bits >> 2 & 0x3333U) | (bits & 0x3333U) << 2;
  bits = (bits >> 4 & 0x0F0FU) | (bits & 0x0F0FU) << 4;
  bits = bits >> 8 | (bits & 0xFFU) << 8;
  return bits >> (16 - count);
}

// Runs loop(copy) on a copy of a state, which the compiler keeps in registers and which then takes
// the state's place. What the loop calls must therefore be inlined, and it a MAROVIA_INLINE_LAMBDA.
template <class State, class Loop>
MAROVIA_INLINE bool RunOnCopy(State& state, const Loop& loop) {
  State copy = state;
  const bool result = loop(copy);
  state = copy;
  return result;
}

}  // namespace marovia

// Compiles a function more than once, for processors with wider vectors too; which one runs is
// decided when the program starts. Results are the same: no multiply-add is fused. Such a function
// must not throw (its callers are compiled as if it could not), and sanitizers cannot follow the
// choice, which is made before they are ready.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && \
    !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define MAROVIA_WIDE_VECTORS [[gnu::target_clones("avx512f", "avx2", "default")]]
#else
#define MAROVIA_WIDE_VECTORS
#endif
