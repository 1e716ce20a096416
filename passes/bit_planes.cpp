#include "passes/bit_planes.h"

#include <algorithm>
#include <utility>

#include "base/bits.h"
#include "base/parallel.h"

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

// A magnitude in [2^(n-k), 2^(n-k+1)) has the biased exponent n - k + 127; `base` is n + 127.
MAROVIA_WIDE_VECTORS void FindPasses(std::span<const float> homes, std::int32_t base,
                                     std::uint8_t* __restrict to) {
  const float* __restrict from = homes.data();
  const std::size_t count = homes.size();
  for (std::size_t home = 0; home < count; ++home) {
    const std::int32_t biased = std::bit_cast<std::int32_t>(from[home]) >> 23 & 0xFF;
    const std::int32_t pass = base - biased;
    to[home] = static_cast<std::uint8_t>(std::min<std::int32_t>(pass, kNever));
  }
}

MAROVIA_WIDE_VECTORS std::uint8_t Earliest(const std::uint8_t* passes) {
  std::uint8_t least = kNever;
  for (std::size_t i = 0; i < 64; ++i) least = std::min(least, passes[i]);
  return least;
}

}  // namespace

BitPlanes::BitPlanes(Buffer<float> homes, int exponent, int threads)
    : homes_(std::move(homes)),
      base_(exponent + 127),
      passes_((homes_.size() / 64 + 1) * 64),
      earliest_(passes_.size() / 64) {
  RunShares(UsefulThreads(threads, homes_.size()), [this](Share share) {
    // Some words at a time, so that their passes are in the cache for the second look.
    constexpr std::size_t kWords = 64;
    const auto words = share.Of(earliest_.size(), kWords);
    for (std::size_t word = words.first; word < words.last; word += kWords) {
      FindIn(word, std::min(word + kWords, words.last));
    }
  });
}

void BitPlanes::FindIn(std::size_t firstWord, std::size_t lastWord) {
  const std::size_t first = 64 * firstWord;
  const std::size_t last = std::min(64 * lastWord, homes_.size());
  FindPasses(std::span<const float>(homes_).subspan(first, last - first), base_, &passes_[first]);
  std::fill(passes_.begin() + static_cast<std::ptrdiff_t>(last),
            passes_.begin() + static_cast<std::ptrdiff_t>(64 * lastWord), kNever);
  for (std::size_t word = firstWord; word < lastWord; ++word) {
    earliest_[word] = Earliest(&passes_[64 * word]);
  }
}

void BitPlanes::FoundIn(int pass, HomeSet& homes) const {
  for (std::size_t i = 0; i < homes.WordCount(); ++i) {
    homes.Word(i) =
        earliest_[i] <= pass ? EqualBytes(&passes_[64 * i], static_cast<std::uint8_t>(pass)) : 0;
  }
}

}  // namespace marovia
