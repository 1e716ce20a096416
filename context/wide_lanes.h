// PlainLanes for a processor with vectors of 32 bytes. Only for files that are compiled for one.
#pragma once

#include <immintrin.h>

#include "context/lanes.h"

namespace marovia {

struct WideLanes {
  static std::uint64_t AtLeast(const std::uint8_t* bytes, int least) {
    const __m256i below = _mm256_set1_epi8(static_cast<char>(least - 1));
    const auto half = [&](const std::uint8_t* from) {
      return Bits(_mm256_cmpgt_epi8(Load(from), below));
    };
    return half(bytes) | half(bytes + 32) << 32;
  }

  static void DoubleKnown(std::uint8_t* known) {  // NOLINT(*-non-const-parameter)
    for (std::uint8_t* half : {known, known + 32}) {
      const __m256i value = Load(half);
      Store(half, _mm256_min_epu8(_mm256_add_epi8(value, value), _mm256_set1_epi8(kMostKnown)));
    }
  }

  static void AddBits(std::uint8_t* bytes, std::uint64_t mask) {
    if (mask == 0) return;
    for (int half : {0, 32}) {
      Store(bytes + half, _mm256_sub_epi8(Load(bytes + half), Expand(mask >> half)));
    }
  }

  static void FindPlaces(const std::uint8_t* known, std::ptrdiff_t pitch,
                         RefinementPlaces& places) {
    for (const int half : {0, 32}) {
      const std::uint8_t* at = known + half;
      const __m256i straight =
          Add(Add(Load(at - pitch), Load(at + pitch)), Add(Load(at - 1), Load(at + 1)));
      const __m256i slanting = Add(Add(Load(at - pitch - 1), Load(at - pitch + 1)),
                                   Add(Load(at + pitch - 1), Load(at + pitch + 1)));
      const __m256i sum = Add(Add(straight, straight), slanting);
      Store(places.asItIs.data() + half, PlacesOf(Load(at), sum));
      Store(places.besideGrown.data() + half, PlacesOf(Load(at), Add(sum, _mm256_set1_epi8(2))));
    }
  }

  static void TilesOf(const std::uint64_t* words, std::array<std::uint64_t, 8>& tiles) {
    Transpose(Load(words), Load(words + 4), tiles);
  }

  static bool TilesOfOpen(const std::uint64_t* closed, std::array<std::uint64_t, 8>& tiles) {
    const __m256i ones = _mm256_set1_epi8(-1);
    const __m256i upper = _mm256_xor_si256(Load(closed), ones);
    const __m256i lower = _mm256_xor_si256(Load(closed + 4), ones);
    const __m256i any = _mm256_or_si256(upper, lower);
    if (_mm256_testz_si256(any, any) != 0) return false;
    Transpose(upper, lower, tiles);
    return true;
  }

  static std::uint32_t Cut(const std::int32_t* values, int shift, std::uint64_t* planes,
                           std::size_t stride, std::uint64_t& negative) {
    // [byte of a value][cell]
    alignas(32) std::array<std::array<std::uint8_t, 64>, 4> bytes;  // NOLINT(*-member-init)
    __m256i all = _mm256_setzero_si256();
    for (const int half : {0, 32}) {
      FourVectors m;  // NOLINT(*-member-init): so are these, and all below, written whole
      for (std::size_t i = 0; i < 4; ++i) {
        const __m256i value = Load(values + half + 8 * i);
        const auto signs = static_cast<unsigned>(_mm256_movemask_ps(_mm256_castsi256_ps(value)));
        negative |= std::uint64_t{signs} << (static_cast<unsigned>(half) + 8 * i);
        m.at[i] = _mm256_sll_epi32(_mm256_abs_epi32(value), _mm_cvtsi32_si128(shift));
        all = _mm256_or_si256(all, m.at[i]);
      }
      SplitBytes(m, bytes, half);
    }
    const std::uint32_t magnitudes = OrOfEight(all);
    const int count = static_cast<int>(std::bit_width(magnitudes));
    for (int first = 0; first < count; first += 8) {
      CutByte(bytes[static_cast<std::size_t>(first / 8)].data(), std::min(8, count - first),
              planes + static_cast<std::size_t>(first) * stride, stride);
    }
    return magnitudes;
  }

  static void Join(const ReadBlock& block, const Reconstruction& how, std::int32_t* values) {
    alignas(32) std::array<std::array<std::uint8_t, 64>, 4> bytes{};
    for (int first = how.lowest & ~7; first <= how.highest; first += 8) {
      JoinByte(block, how, first, bytes[static_cast<std::size_t>(first / 8)].data());
    }
    alignas(32) std::array<std::uint8_t, 64> precisions;  // NOLINT(*-member-init)
    FindPrecisions(block, precisions.data());
    const __m256i added =
        _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(&how.added)));
    const __m128i shift = _mm_cvtsi32_si128(how.shift);
    for (std::size_t i = 0; i < 64; i += 8) {
      __m256i value = Widen(bytes[0].data() + i);
      for (int b = 1; b <= how.highest / 8; ++b) {
        const __m256i more = Widen(bytes[static_cast<std::size_t>(b)].data() + i);
        value = _mm256_or_si256(value, _mm256_slli_epi32(more, 8 * b));
      }
      value = _mm256_add_epi32(value, _mm256_permutevar8x32_epi32(added, Widen(&precisions[i])));
      const __m256i sign = _mm256_cvtepi8_epi32(LoadEight(block.sign + i));
      Store(values + i, _mm256_sign_epi32(_mm256_srl_epi32(value, shift), sign));
    }
  }

 private:
  struct FourVectors {
    __m256i at[4];
  };

  static __m256i Load(const void* from) {
    return _mm256_loadu_si256(static_cast<const __m256i*>(from));
  }
  static void Store(void* to, __m256i value) {
    _mm256_storeu_si256(static_cast<__m256i*>(to), value);
  }
  static __m128i LoadEight(const void* from) {
    return _mm_loadl_epi64(static_cast<const __m128i*>(from));
  }
  static __m256i Widen(const std::uint8_t* eight) { return _mm256_cvtepu8_epi32(LoadEight(eight)); }
  static __m256i Add(__m256i a, __m256i b) { return _mm256_add_epi8(a, b); }
  static std::uint64_t Bits(__m256i bytes) {
    return static_cast<std::uint32_t>(_mm256_movemask_epi8(bytes));
  }

  // All bits of byte i set where the lowest 32 bits of the mask have bit i.
  static __m256i Expand(std::uint64_t mask) {
    const __m256i bytes = _mm256_shuffle_epi8(
        _mm256_set1_epi32(static_cast<int>(mask)),
        _mm256_setr_epi64x(0, 0x0101010101010101, 0x0202020202020202, 0x0303030303030303));
    const __m256i bit = _mm256_set1_epi64x(static_cast<long long>(0x8040201008040201));
    return _mm256_cmpeq_epi8(_mm256_and_si256(bytes, bit), bit);
  }

  static __m256i PlacesOf(__m256i known, __m256i sum) {
    const __m256i first = _mm256_cmpeq_epi8(known, _mm256_set1_epi8(kFirstRefinement));
    __m256i place = _mm256_andnot_si256(first, _mm256_set1_epi8(8));
    for (const std::uint8_t bound : kKnownBounds) {
      const __m256i reached =
          _mm256_cmpgt_epi8(sum, _mm256_set1_epi8(static_cast<char>(bound - 1)));
      place = _mm256_sub_epi8(place, reached);
    }
    const __m256i even = _mm256_cmpgt_epi8(known, _mm256_set1_epi8(kMostKnown - 1));
    return _mm256_blendv_epi8(place, _mm256_set1_epi8(kEvenPlace), even);
  }

  // Eight words as a matrix of bytes, mirrored.
  static void Transpose(__m256i upper, __m256i lower, std::array<std::uint64_t, 8>& tiles) {
    const __m256i pairs = _mm256_setr_epi8(0, 8, 1, 9, 2, 10, 3, 11, 4, 12, 5, 13, 6, 14, 7, 15, 0,
                                           8, 1, 9, 2, 10, 3, 11, 4, 12, 5, 13, 6, 14, 7, 15);
    // In each half of a vector now the bytes of two words by turns: 01 and 23, 45 and 67.
    upper = _mm256_shuffle_epi8(upper, pairs);
    lower = _mm256_shuffle_epi8(lower, pairs);
    const __m256i even = _mm256_permute2x128_si256(upper, lower, 0x20);  // 01, 45
    const __m256i odd = _mm256_permute2x128_si256(upper, lower, 0x31);   // 23, 67
    const __m256i low = _mm256_unpacklo_epi16(even, odd);   // tiles 0 to 3 of 0123, of 4567
    const __m256i high = _mm256_unpackhi_epi16(even, odd);  // tiles 4 to 7
    const __m256i order = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
    Store(tiles.data(), _mm256_permutevar8x32_epi32(low, order));
    Store(tiles.data() + 4, _mm256_permutevar8x32_epi32(high, order));
  }

  // Four vectors of eight values as four of 32 bytes, each the same byte of all values.
  static void SplitBytes(const FourVectors& values,
                         std::array<std::array<std::uint8_t, 64>, 4>& bytes, int half) {
    const __m256i sorted = _mm256_setr_epi8(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15, 0,
                                            4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15);
    const __m256i a = _mm256_shuffle_epi8(values.at[0], sorted);
    const __m256i b = _mm256_shuffle_epi8(values.at[1], sorted);
    const __m256i c = _mm256_shuffle_epi8(values.at[2], sorted);
    const __m256i d = _mm256_shuffle_epi8(values.at[3], sorted);
    const __m256i abLow = _mm256_unpacklo_epi32(a, b);
    const __m256i abHigh = _mm256_unpackhi_epi32(a, b);
    const __m256i cdLow = _mm256_unpacklo_epi32(c, d);
    const __m256i cdHigh = _mm256_unpackhi_epi32(c, d);
    const __m256i order = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
    const FourVectors mixed = {
        _mm256_unpacklo_epi64(abLow, cdLow), _mm256_unpackhi_epi64(abLow, cdLow),
        _mm256_unpacklo_epi64(abHigh, cdHigh), _mm256_unpackhi_epi64(abHigh, cdHigh)};
    for (std::size_t i = 0; i < 4; ++i) {
      Store(bytes[i].data() + half, _mm256_permutevar8x32_epi32(mixed.at[i], order));
    }
  }

  static std::uint32_t OrOfEight(__m256i values) {
    __m128i half =
        _mm_or_si128(_mm256_castsi256_si128(values), _mm256_extracti128_si256(values, 1));
    half = _mm_or_si128(half, _mm_unpackhi_epi64(half, half));
    return static_cast<std::uint32_t>(_mm_cvtsi128_si32(half) | _mm_extract_epi32(half, 1));
  }

  // The planes of the lowest `count` bits of 64 bytes.
  static void CutByte(const std::uint8_t* bytes, int count, std::uint64_t* planes,
                      std::size_t stride) {
    const __m128i toTop = _mm_cvtsi32_si128(8 - count);
    // Bits that cross into the next byte come below the ones that are cut.
    __m256i low = _mm256_sll_epi16(Load(bytes), toTop);
    __m256i high = _mm256_sll_epi16(Load(bytes + 32), toTop);
    for (int plane = count - 1; plane >= 0; --plane) {
      planes[static_cast<std::size_t>(plane) * stride] = Bits(low) | Bits(high) << 32;
      low = Add(low, low);
      high = Add(high, high);
    }
  }

  // Eight planes from `first` on, as far as they are coded, as 64 bytes.
  static void JoinByte(const ReadBlock& block, const Reconstruction& how, int first,
                       std::uint8_t* bytes) {
    __m256i low = _mm256_setzero_si256();
    __m256i high = _mm256_setzero_si256();
    for (int plane = std::min(how.highest, first + 7); plane >= first; --plane) {
      low = Add(low, low);
      high = Add(high, high);
      if (plane < how.lowest) continue;
      const std::uint64_t word = block.planes[static_cast<std::size_t>(plane) * block.stride];
      low = _mm256_sub_epi8(low, Expand(word));
      high = _mm256_sub_epi8(high, Expand(word >> 32));
    }
    Store(bytes, low);
    Store(bytes + 32, high);
  }

  static void FindPrecisions(const ReadBlock& block, std::uint8_t* precisions) {
    for (const int half : {0, 32}) {
      const __m256i known = Load(block.known + half);
      const __m256i old = Expand(block.old >> half);
      const __m256i once = _mm256_cmpeq_epi8(known, _mm256_set1_epi8(1));
      const __m256i twice =
          _mm256_and_si256(old, _mm256_cmpeq_epi8(known, _mm256_set1_epi8(kFirstRefinement)));
      const __m256i never = _mm256_or_si256(once, twice);
      Store(precisions + half, _mm256_or_si256(_mm256_and_si256(old, _mm256_set1_epi8(1)),
                                               _mm256_and_si256(never, _mm256_set1_epi8(2))));
    }
  }
};

}  // namespace marovia
