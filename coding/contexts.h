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
// Where what is not the first symbol has less of the total than this, guessing that the first comes
// costs less than selecting. Found by trial, with images and with files of certain symbols alone.
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
  static constexpr unsigned kEndIndex = 4;

  // The symbol index (1 to 3) of a character, and back.
  [[nodiscard]] unsigned IndexOf(unsigned character) const { return indices_[character]; }
  [[nodiscard]] unsigned CharacterAt(unsigned index) const { return characters_[index]; }

  // The part of a symbol, as fractions, and that of the end symbol.
  [[nodiscard]] MAROVIA_INLINE Part PartOf(unsigned index) const {
    return {FractionAbove(index), FractionAbove(index - 1)};
  }
  [[nodiscard]] Part PartOfEnd() const { return {0, FractionAbove(3)}; }

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
    if (above_[0] == Setup::kMostTotal) [[unlikely]]
      Halve();
    if (index > 1 && CountOf(index) == CountOf(index - 1)) [[unlikely]]
      index = MoveUp(index);
    for (unsigned i = 0; i < 3; ++i) above_[i] += i < index ? 1 : 0;
  }

  // After an update where symbols are to be found: by the time of the next one it is done.
  MAROVIA_INLINE void Prepare() {
    for (unsigned i = 1; i < 4; ++i) fractions_[i] = FractionAbove(i);
  }

 private:
  using Counts = std::array<std::uint32_t, 4>;

  [[nodiscard]] std::uint32_t CountOf(unsigned index) const {
    return above_[index - 1] - above_[index];
  }
  [[nodiscard]] std::uint32_t FractionAbove(unsigned index) const {
    return arithmetic::Fraction(above_[index], above_[0]);
  }

  [[gnu::noinline]] void Halve() {
    const Counts old = above_;
    above_[3] = (old[3] + 1) / 2;
    for (unsigned i = 3; i > 0; --i) above_[i - 1] = above_[i] + (old[i - 1] - old[i] + 1) / 2;
  }

  // Exchanges a symbol with the first of those that have its count; returns its new index.
  [[gnu::noinline]] unsigned MoveUp(unsigned index) {
    unsigned place = index;
    while (place > 1 && CountOf(place) == CountOf(place - 1)) --place;
    std::swap(characters_[index], characters_[place]);
    indices_[characters_[index]] = index;
    indices_[characters_[place]] = place;
    return place;
  }

  // The counts of the symbols above the indices 0 (the total) to 3, and the same as fractions of
  // the total.
  Counts above_ = Setup::kHasEnd ? Counts{4, 3, 2, 1} : Counts{3, 2, 1, 0};
  Counts fractions_{0, FractionAbove(1), FractionAbove(2), FractionAbove(3)};
  std::array<unsigned, 3> indices_{1, 2, 3};        // by character
  std::array<unsigned, 4> characters_{0, 0, 1, 2};  // by index, from 1
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

// Two contexts of two characters, 0 and 1, each with the larger count first; a character that draws
// level moves up. The character coded last chooses the context, at first as after a 0. Not an array
// of two, since what is indexed cannot be kept in registers.
class BinaryContexts {
 public:
  // The index of a character is 1 where it comes first, else 2.
  [[nodiscard]] unsigned IndexOf(unsigned character) const { return 1 + (character ^ First()); }
  [[nodiscard]] unsigned CharacterAt(unsigned index) const { return First() ^ (index - 1); }

  [[nodiscard]] MAROVIA_INLINE Part PartOf(unsigned index) const {
    const std::uint32_t isFirst = arithmetic::MaskIf(index == 1);
    const std::uint32_t second = FractionOfOthers();
    return {second & isFirst, (arithmetic::kWhole & isFirst) | (second & ~isFirst)};
  }

  [[nodiscard]] std::uint32_t FractionOfOthers() const {
    return static_cast<std::uint32_t>(state_);
  }

  [[nodiscard]] MAROVIA_INLINE Found Find(std::uint32_t code,
                                          const arithmetic::Range& range) const {
    const std::uint32_t whole = range.wide >> range.halved;
    const std::uint32_t second = range.Times(FractionOfOthers());
    const std::uint32_t isSecond = arithmetic::MaskIf(code < second);
    return {1 - isSecond, {second & ~isSecond, (second & isSecond) | (whole & ~isSecond)}};
  }

  // Both states that may follow are loaded before it is known which does.
  MAROVIA_INLINE void Update(unsigned index) {
    const auto state = std::bit_cast<BinaryState>(state_);
    const unsigned character = CharacterAt(index);
    const std::uint64_t afterFirst = StateOf(state.afterFirst);
    const std::uint64_t afterSecond = StateOf(state.afterSecond);
    const std::uint64_t isSecond = std::uint64_t{1} - index;
    const std::uint64_t next = afterFirst ^ ((afterFirst ^ afterSecond) & isSecond);
    const std::uint64_t otherNext = std::uint64_t{0} - (character ^ last_);
    const std::uint64_t change = (next ^ other_) & otherNext;
    state_ = next ^ change;
    other_ ^= change;
    last_ = character;
  }
  void Prepare() {}

 private:
  static std::uint64_t StateOf(std::uint16_t number) {
    return std::bit_cast<std::uint64_t>(kBinaryStates[number]);
  }
  [[nodiscard]] unsigned First() const { return std::bit_cast<BinaryState>(state_).afterFirst & 1; }

  std::uint64_t state_ = StateOf(0);  // of the context that the next character is coded in
  std::uint64_t other_ = StateOf(0);
  unsigned last_ = 0;
};

}  // namespace marovia
