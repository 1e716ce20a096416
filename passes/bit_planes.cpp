#include "passes/bit_planes.h"

#include <algorithm>
#include <utility>

#include "base/bits.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace marovia {
namespace {

constexpr std::uint8_t kNever = 255;

// Which of 64 bytes equal `wanted`, one bit each.
#ifdef __SSE2__
std::uint64_t EqualBytes(const std::uint8_t* bytes, std::uint8_t wanted) {
  const __m128i all = _mm_set1_epi8(static_cast<char>(wanted));
  std::uint64_t mask = 0;
  for (std::size_t i = 0; i < 64; i += 16) {
    const __m128i part = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + i));
    const int equal = _mm_movemask_epi8(_mm_cmpeq_epi8(part, all));
    mask |= std::uint64_t{static_cast<std::uint32_t>(equal)} << i;
  }
  return mask;
}
#else
std::uint64_t EqualBytes(const std::uint8_t* bytes, std::uint8_t wanted) {
  std::uint64_t mask = 0;
  for (int i = 0; i < 64; ++i) mask |= std::uint64_t{bytes[i] == wanted} << i;
  return mask;
}
#endif

// A magnitude in [2^(n-k), 2^(n-k+1)) has the biased exponent n - k + 127.
MAROVIA_WIDE_VECTORS void FindPasses(std::span<const float> homes, std::int32_t base,
                                     Buffer<std::uint8_t>& passes) {
  const float* __restrict from = homes.data();
  std::uint8_t* __restrict to = passes.data();
  const std::size_t count = homes.size();
  for (std::size_t home = 0; home < count; ++home) {
    const std::int32_t biased = std::bit_cast<std::int32_t>(from[home]) >> 23 & 0xFF;
    const std::int32_t pass = base - biased;
    to[home] = static_cast<std::uint8_t>(std::min<std::int32_t>(pass, kNever));
  }
}

MAROVIA_WIDE_VECTORS void FindEarliest(const Buffer<std::uint8_t>& passes,
                                       Buffer<std::uint8_t>& earliest) {
  for (std::size_t word = 0; word < earliest.size(); ++word) {
    const std::uint8_t* from = &passes[64 * word];
    std::uint8_t least = kNever;
    for (std::size_t i = 0; i < 64; ++i) least = std::min(least, from[i]);
    earliest[word] = least;
  }
}

}  // namespace

BitPlanes::BitPlanes(Buffer<float> homes, int exponent)
    : homes_(std::move(homes)),
      base_(exponent + 127),
      passes_((homes_.size() / 64 + 1) * 64, kNever),
      earliest_(passes_.size() / 64) {
  FindPasses(homes_, base_, passes_);
  FindEarliest(passes_, earliest_);
}

void BitPlanes::FoundIn(int pass, HomeSet& homes) const {
  for (std::size_t i = 0; i < homes.WordCount(); ++i) {
    homes.Word(i) =
        earliest_[i] <= pass ? EqualBytes(&passes_[64 * i], static_cast<std::uint8_t>(pass)) : 0;
  }
}

}  // namespace marovia
