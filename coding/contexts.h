// The adaptive models of the arithmetic coder: how a symbol's part of a range follows from the
// counts of a context, and how the counts follow the symbols.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <utility>

#include "base/bits.h"

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
constexpr int kFractionBits = 30;
constexpr std::uint32_t kWhole = 1U << kFractionBits;
constexpr std::uint32_t kRare = kWhole / 32;

// ceil(2^30 / total).
inline constexpr std::array<std::uint32_t, kMostTotal + 1> kReciprocals = [] {
  std::array<std::uint32_t, kMostTotal + 1> reciprocals{};
  for (std::uint32_t total = 1; total <= kMostTotal; ++total) {
    reciprocals[total] = (kWhole + total - 1) / total;
  }
  return reciprocals;
}();

// count / total as a fraction of 2^30, to be kept with a model: below 2^30 for a count below total.
constexpr std::uint32_t Fraction(std::uint32_t count, std::uint32_t total) {
  return count * kReciprocals[total];
}

// All ones or none. Selecting with masks keeps the compiler from branching on what cannot be
// foretold.
inline std::uint32_t MaskIf(bool condition) {
  return 0U - static_cast<std::uint32_t>(condition);
}

// The range of a code interval: `wide`, or half of it. Whether it is halved is known later than
// `wide` is, so it only adds to a shift that comes after a multiplication.
struct Range {
  std::uint32_t wide;
  unsigned halved;  // 0 or 1; where it is 1, `wide` is even

  // The range times a fraction, without a division. Exact: a fraction is too large by less than
  // total / 2^30, which times range * count <= 2^11 * total <= 2^20 stays below one part in total.
  [[nodiscard]] std::uint32_t Times(std::uint32_t fraction) const {
    return static_cast<std::uint32_t>((std::uint64_t{wide} * fraction) >> (kFractionBits + halved));
  }
};

}  // namespace arithmetic

// A symbol's part of a range: from below to end - 1; or the same as fractions of the whole.
struct Part {
  std::uint32_t below;
  std::uint32_t end;
};

// A symbol found by its code value.
struct Found {
  unsigned index;
  Part part;
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

  // The part of a symbol, as fractions; an index of 4 is the end symbol.
  [[nodiscard]] Part PartOf(unsigned index) const {
    return {fractions_[index], fractions_[index - 1]};
  }

  // What all symbols but the first have of the total.
  [[nodiscard]] std::uint32_t FractionOfOthers() const { return fractions_[1]; }

  // The symbol that a code value, less the low end of a range, falls to, and its part of the range.
  [[nodiscard]] MAROVIA_INLINE Found Find(std::uint32_t code,
                                          const arithmetic::Range& range) const {
    const std::uint32_t whole = range.wide >> range.halved;
    const std::uint32_t first = range.Times(fractions_[1]);
    const std::uint32_t second = range.Times(fractions_[2]);
    const std::uint32_t third = Setup::kHasEnd ? range.Times(fractions_[3]) : 0;
    const std::uint32_t past1 = arithmetic::MaskIf(code < first);
    const std::uint32_t past2 = arithmetic::MaskIf(code < second);
    if (Setup::kHasEnd && code < third) return {kEndIndex, {0, third}};
    return {1 - past1 - past2,
            {(first & ~past1) | (second & (past1 ^ past2)) | (third & past2),
             (whole & ~past1) | (first & (past1 ^ past2)) | (second & past2)}};
  }

  MAROVIA_INLINE void Update(unsigned index) {
    if (Above(0) == Setup::kMostTotal) [[unlikely]]
      Halve();
    if (CountOf(index) == CountOf(index - 1)) [[unlikely]]
      index = MoveUp(index);
    cumulative_ += kOneUpTo[index];
    SetFractions();
  }

 private:
  static constexpr int kLane = 16;  // bits of a count
  // A count in each lane below the index.
  static constexpr std::array<std::uint64_t, 4> kOneUpTo = {0, 0x1, 0x10001, 0x100010001};

  // The counts of the symbols above an index, 0 to 3.
  [[nodiscard]] constexpr std::uint32_t Above(unsigned index) const {
    return static_cast<std::uint32_t>(cumulative_ >> (kLane * index)) & 0xFFFF;
  }
  // The count of a symbol, and of none at index 0.
  [[nodiscard]] std::uint32_t CountOf(unsigned index) const {
    return index == 0 ? 0 : Above(index - 1) - Above(index);
  }

  void SetFractions() {
    for (unsigned index = 1; index < kSymbols; ++index) {
      fractions_[index] = arithmetic::Fraction(Above(index), Above(0));
    }
  }

  [[gnu::noinline]] void Halve() {
    std::uint64_t halved = 0;
    std::uint32_t above = 0;
    if (Setup::kHasEnd) {
      above = (Above(3) + 1) / 2;
      halved = std::uint64_t{above} << (3 * kLane);
    }
    for (unsigned index = 3; index > 0; --index) {
      above += (CountOf(index) + 1) / 2;
      halved |= std::uint64_t{above} << (kLane * (index - 1));
    }
    cumulative_ = halved;
  }

  // Exchanges a symbol with the first of those that have its count, and returns that one's index.
  [[gnu::noinline]] unsigned MoveUp(unsigned index) {
    unsigned place = index;
    while (CountOf(place) == CountOf(place - 1)) --place;
    std::swap(characterAt_[place], characterAt_[index]);
    indexOf_[characterAt_[place]] = static_cast<std::uint8_t>(place);
    indexOf_[characterAt_[index]] = static_cast<std::uint8_t>(index);
    return place;
  }

  // Four lanes: the counts above the indices 0 (the total) to 3.
  std::uint64_t cumulative_ = Setup::kHasEnd ? 0x0001000200030004U : 0x0000000100020003U;
  // The same as fractions of the total; the symbols above the last are none.
  std::array<std::uint32_t, kSymbols + 1> fractions_ = [] {
    std::array<std::uint32_t, kSymbols + 1> fractions{arithmetic::kWhole};
    for (std::uint32_t i = 1; i < kSymbols; ++i) {
      fractions[i] = arithmetic::Fraction(kSymbols - i, kSymbols);
    }
    return fractions;
  }();
  std::array<std::uint8_t, 4> characterAt_{0, 0, 1, 2};  // from index 1
  std::array<std::uint8_t, 3> indexOf_{1, 2, 3};
};

// A state of a two-character context: what the count of the second character is of the total, and
// the numbers of the states that follow. A state's number is odd where character 1 comes first; so
// is that of the state after its first character, which stays the first.
struct BinaryState {
  std::uint32_t second;
  std::uint16_t afterFirst;
  std::uint16_t afterSecond;
};

// All pairs of counts that occur, for totals of 2 to 127, each with either character first. The
// first two states are those of a fresh context.
constexpr std::size_t kBinaryStateCount = 8064;
extern const std::array<BinaryState, kBinaryStateCount> kBinaryStates;

// Two characters, 0 and 1, the one with the larger count first; one that draws level moves up.
class BinaryContext {
 public:
  // The index of a character is 1 where it comes first, else 2.
  [[nodiscard]] unsigned IndexOf(unsigned character) const { return 1 + (character ^ First()); }
  [[nodiscard]] unsigned CharacterAt(unsigned index) const { return First() ^ (index - 1); }

  [[nodiscard]] Part PartOf(unsigned index) const {
    const std::uint32_t isFirst = arithmetic::MaskIf(index == 1);
    return {state_.second & isFirst, (arithmetic::kWhole & isFirst) | (state_.second & ~isFirst)};
  }

  [[nodiscard]] std::uint32_t FractionOfOthers() const { return state_.second; }

  [[nodiscard]] MAROVIA_INLINE Found Find(std::uint32_t code,
                                          const arithmetic::Range& range) const {
    const std::uint32_t whole = range.wide >> range.halved;
    const std::uint32_t second = range.Times(state_.second);
    const std::uint32_t isSecond = arithmetic::MaskIf(code < second);
    return {1 - isSecond, {second & ~isSecond, (second & isSecond) | (whole & ~isSecond)}};
  }

  // Both states that may follow are loaded before it is known which does.
  MAROVIA_INLINE void Update(unsigned index) {
    const auto afterFirst = std::bit_cast<std::uint64_t>(kBinaryStates[state_.afterFirst]);
    const auto afterSecond = std::bit_cast<std::uint64_t>(kBinaryStates[state_.afterSecond]);
    const std::uint64_t isSecond = std::uint64_t{1} - index;
    state_ = std::bit_cast<BinaryState>(afterFirst ^ ((afterFirst ^ afterSecond) & isSecond));
  }

 private:
  [[nodiscard]] unsigned First() const { return state_.afterFirst & 1; }

  BinaryState state_ = kBinaryStates[0];
};

}  // namespace marovia
