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

#include "base/bits.h"
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
// The product of count and reciprocal comes first, as it does not wait for the range.
inline std::uint32_t Scaled(std::uint32_t range, std::uint32_t count, std::uint32_t reciprocal) {
  return static_cast<std::uint32_t>((range * (std::uint64_t{count} * reciprocal)) >>
                                    kReciprocalBits);
}

// How far the interval of `range` values from `low` on, in a window of Bits bits, widens: as often
// as it still fits a window's length from some multiple of half a window on. The range then is
// above a quarter of the window, so only the shift that brings it above the half and the one before
// it can be right.
template <int Bits>
int Widening(std::uint32_t low, std::uint32_t range) {
  constexpr std::uint32_t kWindow = 1U << Bits;
  const int most = LeadingZeros(2 * range - 1) - (31 - Bits);
  const std::uint32_t offset = (low << most) & (kWindow / 2 - 1);
  return most - static_cast<int>(offset + (range << most) > kWindow);
}

// All ones or none. Selecting with masks keeps the compiler from branching on what cannot be
// foretold.
inline std::uint32_t MaskIf(bool condition) {
  return 0U - static_cast<std::uint32_t>(condition);
}

}  // namespace arithmetic

// The part of an interval that a symbol has: counts below it, counts up to its end, out of a total.
struct Share {
  std::uint32_t low;
  std::uint32_t high;
  std::uint32_t total;
};

// A symbol found by its code value: its index and its part of the range, from below to end - 1.
struct Found {
  unsigned index;
  std::uint32_t below;
  std::uint32_t end;
};

// Three characters, 0 to 2, kept in the order of their counts: one that draws level with others
// moves up past them. Where the set-up has an end symbol, it stays behind them with a count of 1.
template <class Setup>
class TernaryContext {
 public:
  static constexpr unsigned kSymbols = Setup::kHasEnd ? 4 : 3;
  static constexpr unsigned kEndIndex = 4;

  // The symbol index (1 to 3) of a character, and back.
  [[nodiscard]] unsigned IndexOf(unsigned character) const { return indexOf_[character]; }
  [[nodiscard]] unsigned CharacterAt(unsigned index) const { return characterAt_[index]; }

  [[nodiscard]] std::uint32_t Total() const { return Above(0); }
  [[nodiscard]] Share ShareOf(unsigned index) const {
    return {index < kEndIndex ? Above(index) : 0, Above(index - 1), Total()};
  }

  // The index of the symbol that a code value, less the low end of a range, falls to.
  Found Find(std::uint32_t code, std::uint32_t range) const {
    const std::uint32_t reciprocal = arithmetic::kReciprocals[Total()];
    const std::uint32_t first = arithmetic::Scaled(range, Above(1), reciprocal);
    const std::uint32_t second = arithmetic::Scaled(range, Above(2), reciprocal);
    const std::uint32_t past1 = arithmetic::MaskIf(code < first);
    const std::uint32_t past2 = arithmetic::MaskIf(code < second);
    Found found{1 - past1 - past2, (first & ~past1) | (second & past1 & ~past2),
                (range & ~past1) | (first & past1 & ~past2) | (second & past2)};
    if constexpr (Setup::kHasEnd) {
      const std::uint32_t third = arithmetic::Scaled(range, Above(3), reciprocal);
      if (code < third) return {kEndIndex, 0, third};
      found.below |= third & past2;
    }
    return found;
  }

  void Update(unsigned index) {
    if (Total() == Setup::kMostTotal) Halve();
    if (CountOf(index) == CountOf(index - 1)) index = MoveUp(index);
    cumulative_ += kOneUpTo[index];
  }

 private:
  static constexpr int kLane = 16;  // bits of a count
  // A count in each lane below the index.
  static constexpr std::array<std::uint64_t, 4> kOneUpTo = {0, 0x1, 0x10001, 0x100010001};

  // The counts of the symbols above an index, 0 to 3.
  [[nodiscard]] std::uint32_t Above(unsigned index) const {
    return static_cast<std::uint32_t>(cumulative_ >> (kLane * index)) & 0xFFFF;
  }
  // The count of a symbol, and of none at index 0.
  [[nodiscard]] std::uint32_t CountOf(unsigned index) const {
    if (index == 0) return 0;
    return Above(index - 1) - (index < kEndIndex ? Above(index) : 0);
  }

  void Halve() {
    std::uint64_t halved = 0;
    std::uint32_t above = 0;
    for (unsigned index = kSymbols; index > 0; --index) {
      above += (CountOf(index) + 1) / 2;
      halved |= std::uint64_t{above} << (kLane * (index - 1));
    }
    cumulative_ = halved;
  }

  // Exchanges a symbol with the first of those that have its count, and returns that one's index.
  unsigned MoveUp(unsigned index) {
    unsigned place = index;
    while (CountOf(place) == CountOf(place - 1)) --place;
    std::swap(characterAt_[place], characterAt_[index]);
    indexOf_[characterAt_[place]] = static_cast<std::uint8_t>(place);
    indexOf_[characterAt_[index]] = static_cast<std::uint8_t>(index);
    return place;
  }

  // Four lanes: the counts above the indices 0 (the total) to 3.
  std::uint64_t cumulative_ = Setup::kHasEnd ? 0x0001000200030004U : 0x0000000100020003U;
  std::array<std::uint8_t, 4> characterAt_{0, 0, 1, 2};  // from index 1
  std::array<std::uint8_t, 3> indexOf_{1, 2, 3};
};

// Two characters, 0 and 1, the one with the larger count first; one that draws level moves up.
class BinaryContext {
 public:
  // The index of a character is 1 where it comes first, else 2.
  [[nodiscard]] unsigned IndexOf(unsigned character) const { return 1 + (character ^ first_); }
  [[nodiscard]] unsigned CharacterAt(unsigned index) const { return first_ ^ (index - 1); }

  [[nodiscard]] std::uint32_t Total() const { return counts_[0] + counts_[1]; }
  [[nodiscard]] Share ShareOf(unsigned index) const {
    const std::uint32_t isFirst = arithmetic::MaskIf(index == 1);
    return {counts_[1] & isFirst, counts_[1] + (counts_[0] & isFirst), Total()};
  }

  Found Find(std::uint32_t code, std::uint32_t range) const {
    const std::uint32_t second =
        arithmetic::Scaled(range, counts_[1], arithmetic::kReciprocals[Total()]);
    const std::uint32_t isSecond = arithmetic::MaskIf(code < second);
    return {1 - isSecond, second & ~isSecond, (second & isSecond) | (range & ~isSecond)};
  }

  void Update(unsigned index) {
    if (Total() == SecondSetup::kMostTotal) {
      for (std::uint32_t& count : counts_) count = (count + 1) / 2;
    }
    const unsigned movesUp = static_cast<unsigned>(counts_[0] == counts_[1]) & (index - 1);
    first_ ^= movesUp;
    ++counts_[index - 1 - movesUp];
  }

 private:
  std::array<std::uint32_t, 2> counts_{1, 1};  // of the first and the second
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
    const int shift = arithmetic::Widening<Setup::kBits>(window + below, end - below);
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
  unsigned DecodeIndex(const Context& context) {
    const Found found = context.Find(code_, range_);
    Take(found);
    return found.index;
  }

  // The next character in a context, which learns from it.
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
    return reader_.NearEnd() && reader_.BitsRead() - Setup::kBits >= reader_.BitsPresent();
  }

 private:
  static constexpr std::uint32_t kWindowMask = (1U << (Setup::kBits - 1)) - 1;

  void Take(const Found& found) {
    const std::uint32_t low = low_ + found.below;
    const int shift = arithmetic::Widening<Setup::kBits>(low, found.end - found.below);
    code_ = ((code_ - found.below) << shift) | static_cast<std::uint32_t>(reader_.GetBits(shift));
    low_ = (low << shift) & kWindowMask;
    range_ = (found.end - found.below) << shift;
  }

  BitReader reader_;
  std::uint32_t code_;  // the code value less the low end
  std::uint32_t low_ = 0;
  std::uint32_t range_ = 1U << Setup::kBits;
};

extern template class ArithmeticEncoder<FirstSetup>;
extern template class ArithmeticEncoder<SecondSetup>;

}  // namespace marovia
