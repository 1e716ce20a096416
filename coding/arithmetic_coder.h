// Adaptive arithmetic coding with small integers, after I. Witten, R. Neal and J. Cleary,
// "Arithmetic coding for data compression" (1987).
//
// The classic form keeps the code interval [low, high] in a window of B bits, sends the leading
// bits in which both ends agree, and, where they straddle the middle as 01... and 10..., counts a
// bit to follow and widens the middle half. Here the low end is kept whole instead: bits to follow
// are the run of ones right above the window, a carry into them (and into bytes already written)
// decides them, and both kinds of widening are shifts that one look at the ends gives. After every
// symbol the window's own part of the low end is then its lowest B - 1 bits.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <utility>

#include "coding/bit_stream.h"

namespace marovia {

// The two set-ups: width of the code values, total count at which a context's counts are halved,
// and whether its three-symbol contexts hold a fourth symbol that ends the stream.
struct FirstSetup {
  static constexpr int kBits = 11;
  static constexpr unsigned kMostTotal = 511;
  static constexpr bool kHasEnd = true;
};
struct SecondSetup {
  static constexpr int kBits = 9;
  static constexpr unsigned kMostTotal = 127;
  static constexpr bool kHasEnd = false;
};

namespace arithmetic {

constexpr unsigned kMostTotal = 511;
constexpr int kReciprocalBits = 30;

// ceil(2^30 / total).
inline constexpr std::array<std::uint32_t, kMostTotal + 1> kReciprocals = [] {
  std::array<std::uint32_t, kMostTotal + 1> reciprocals{};
  for (std::uint32_t total = 1; total <= kMostTotal; ++total) {
    reciprocals[total] = ((1U << kReciprocalBits) + total - 1) / total;
  }
  return reciprocals;
}();

// range * count / total without a division. Exact: the reciprocal is too large by less than
// total / 2^30, which times range * count <= 2^11 * total <= 2^20 stays below one part in total.
inline std::uint32_t Scaled(std::uint32_t range, std::uint32_t count, std::uint32_t reciprocal) {
  return static_cast<std::uint32_t>((std::uint64_t{range} * count * reciprocal) >> kReciprocalBits);
}

// How far an interval in a window of Bits bits widens: the leading bits in which its ends agree,
// and after the first in which they differ the pairs of 1 in low and 0 in high.
template <int Bits>
int Widening(std::uint32_t low, std::uint32_t high) {
  const std::uint32_t l = low << (32 - Bits);
  const std::uint32_t h = high << (32 - Bits) | ((1U << (32 - Bits)) - 1);
  const int agreed = std::countl_zero(l ^ h);
  const std::uint32_t straddle = ((l & ~h) << agreed) << 1;
  return agreed + std::countl_one(straddle);
}

}  // namespace arithmetic

// The part of an interval that a symbol has: counts below it, counts up to its end, out of a total.
struct Share {
  std::uint32_t low;
  std::uint32_t high;
  std::uint32_t total;
};

// Three characters, 0 to 2, kept in the order of their counts: one that draws level with others
// moves up past them. Where the set-up has an end symbol, it stays behind them with a count of 1.
template <class Setup>
class TernaryContext {
 public:
  static constexpr unsigned kSymbols = Setup::kHasEnd ? 4 : 3;
  static constexpr unsigned kEndIndex = 4;

  // The symbol index (1 to kSymbols) of a character, and back.
  [[nodiscard]] unsigned IndexOf(unsigned character) const { return indexOf_[character]; }
  [[nodiscard]] unsigned CharacterAt(unsigned index) const { return characterAt_[index]; }

  [[nodiscard]] std::uint32_t Total() const { return cumulative_[0]; }
  // The counts of all symbols above an index.
  [[nodiscard]] std::uint32_t Cumulative(unsigned index) const { return cumulative_[index]; }
  [[nodiscard]] Share ShareOf(unsigned index) const {
    return {cumulative_[index], cumulative_[index - 1], cumulative_[0]};
  }

  void Update(unsigned index) {
    if (cumulative_[0] == Setup::kMostTotal) Halve();
    unsigned place = index;
    while (place > 1 && CountOf(place) == CountOf(place - 1)) --place;
    if (place != index) Exchange(place, index);
    for (unsigned i = 0; i < place; ++i) ++cumulative_[i];
  }

 private:
  [[nodiscard]] std::uint32_t CountOf(unsigned index) const {
    return static_cast<std::uint32_t>(cumulative_[index - 1]) - cumulative_[index];
  }

  void Halve() {
    std::array<std::uint32_t, kSymbols + 1> counts{};
    for (unsigned i = 1; i <= kSymbols; ++i) counts[i] = (CountOf(i) + 1) / 2;
    std::uint32_t above = 0;
    for (unsigned i = kSymbols; i > 0; --i) {
      cumulative_[i] = static_cast<std::uint16_t>(above);
      above += counts[i];
    }
    cumulative_[0] = static_cast<std::uint16_t>(above);
  }

  void Exchange(unsigned place, unsigned index) {
    std::swap(characterAt_[place], characterAt_[index]);
    indexOf_[characterAt_[place]] = static_cast<std::uint8_t>(place);
    indexOf_[characterAt_[index]] = static_cast<std::uint8_t>(index);
  }

  std::array<std::uint16_t, 5> cumulative_ = Setup::kHasEnd
                                                 ? std::array<std::uint16_t, 5>{4, 3, 2, 1, 0}
                                                 : std::array<std::uint16_t, 5>{3, 2, 1, 0, 0};
  std::array<std::uint8_t, 4> characterAt_{0, 0, 1, 2};  // from index 1
  std::array<std::uint8_t, 3> indexOf_{1, 2, 3};
};

// Two characters, 0 and 1, the one with the larger count first.
class BinaryContext {
 public:
  [[nodiscard]] unsigned IndexOf(unsigned character) const { return character == first_ ? 1 : 2; }
  [[nodiscard]] unsigned CharacterAt(unsigned index) const { return first_ ^ (index - 1); }

  [[nodiscard]] std::uint32_t Total() const { return counts_[0] + counts_[1]; }
  [[nodiscard]] std::uint32_t Cumulative(unsigned index) const {
    return index == 1 ? counts_[1] : 0;
  }
  [[nodiscard]] Share ShareOf(unsigned index) const {
    return index == 1 ? Share{counts_[1], Total(), Total()} : Share{0, counts_[1], Total()};
  }

  void Update(unsigned index) {
    if (Total() == SecondSetup::kMostTotal) {
      for (std::uint32_t& count : counts_) count = (count + 1) / 2;
    }
    if (index == 2 && counts_[0] == counts_[1]) {
      first_ ^= 1U;
      index = 1;
    }
    ++counts_[index - 1];
  }

 private:
  std::array<std::uint32_t, 2> counts_{1, 1};
  unsigned first_ = 0;
};

template <class Setup>
class ArithmeticEncoder {
 public:
  void Encode(const Share& share) {
    const std::uint32_t reciprocal = arithmetic::kReciprocals[share.total];
    const std::uint32_t below = arithmetic::Scaled(range_, share.low, reciprocal);
    const std::uint32_t end = arithmetic::Scaled(range_, share.high, reciprocal);
    const auto window = static_cast<std::uint32_t>(low_) & kWindowMask;
    const int shift = arithmetic::Widening<Setup::kBits>(window + below, window + end - 1);
    low_ = (low_ + below) << shift;
    range_ = (end - below) << shift;
    held_ += shift;
    shifted_ += shift;
    if (held_ > kMostHeld) WriteBytes();
  }

  // Codes a character in its context, which learns from it.
  template <class Context>
  void Encode(Context& context, unsigned character) {
    const unsigned index = context.IndexOf(character);
    Encode(context.ShareOf(index));
    context.Update(index);
  }

  // Bits sent, and those that are still to follow once the next one is decided.
  [[nodiscard]] std::int64_t BitsSpent() const { return shifted_; }
  [[nodiscard]] std::int64_t BitsToFollow() const;
  [[nodiscard]] std::int64_t BitsSent() const { return BitsSpent() - BitsToFollow(); }

  // Closes the interval with two more bits and returns the bytes, the last one filled up with
  // zeros.
  Bytes DoneEncoding();

 private:
  static constexpr std::uint32_t kWindowMask = (1U << (Setup::kBits - 1)) - 1;
  // A symbol shifts by 11 bits at most and a carry takes one: they fit above this many.
  static constexpr int kMostHeld = 48;

  void WriteBytes();
  void Carry();

  // The bits of the low end that are not yet bytes, the lowest held_ of them; above those, a carry.
  std::uint64_t low_ = 0;
  std::uint32_t range_ = 1U << Setup::kBits;
  int held_ = Setup::kBits;
  std::int64_t shifted_ = 0;
  Bytes bytes_;
};

template <class Setup>
class ArithmeticDecoder {
 public:
  explicit ArithmeticDecoder(ByteView stream)
      : reader_(stream), code_(static_cast<std::uint32_t>(reader_.GetBits(Setup::kBits))) {}

  // The index of the next symbol in a context, which learns from it; the end symbol teaches
  // nothing.
  template <class Context>
  unsigned DecodeIndex(Context& context) {
    const std::uint32_t reciprocal = arithmetic::kReciprocals[context.Total()];
    std::uint32_t end = range_;
    unsigned index = 1;
    std::uint32_t below = arithmetic::Scaled(range_, context.Cumulative(1), reciprocal);
    while (below > code_) {
      end = below;
      below = arithmetic::Scaled(range_, context.Cumulative(++index), reciprocal);
    }
    Take(below, end);
    return index;
  }

  template <class Context>
  unsigned Decode(Context& context) {
    const unsigned index = DecodeIndex(context);
    const unsigned character = context.CharacterAt(index);
    context.Update(index);
    return character;
  }

  // At most one code value's bits beyond the end: what is asked for after those does not count.
  [[nodiscard]] std::int64_t BitsRead() const {
    return std::min(reader_.BitsRead(), reader_.BitsPresent() + Setup::kBits);
  }
  // Whether a whole code value has been read beyond the end of the stream: what was decoded last is
  // not in the file.
  [[nodiscard]] bool Exhausted() const {
    return reader_.BitsRead() - Setup::kBits >= reader_.BitsPresent();
  }

 private:
  static constexpr std::uint32_t kWindowMask = (1U << (Setup::kBits - 1)) - 1;

  void Take(std::uint32_t below, std::uint32_t end) {
    const int shift = arithmetic::Widening<Setup::kBits>(low_ + below, low_ + end - 1);
    code_ = ((code_ - below) << shift) | static_cast<std::uint32_t>(reader_.GetBits(shift));
    low_ = ((low_ + below) << shift) & kWindowMask;
    range_ = (end - below) << shift;
  }

  BitReader reader_;
  std::uint32_t code_;  // the code value less the low end
  std::uint32_t low_ = 0;
  std::uint32_t range_ = 1U << Setup::kBits;
};

extern template class ArithmeticEncoder<FirstSetup>;
extern template class ArithmeticEncoder<SecondSetup>;

}  // namespace marovia
