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
#include <bit>
#include <cstdint>

#include "base/bits.h"
#include "coding/bit_stream.h"
#include "coding/contexts.h"

namespace marovia {

namespace arithmetic {

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

}  // namespace arithmetic

template <class Setup>
class ArithmeticEncoder {
 public:
  // Codes a symbol of a context by its index.
  template <class Context>
  void EncodeIndex(const Context& context, unsigned index) {
    const Part part = context.PartOf(index, range_);
    const auto window = static_cast<std::uint32_t>(low_) & kWindowMask;
    const std::uint32_t range = part.end - part.below;
    const int shift = arithmetic::Widening<Setup::kBits>(window + part.below, range);
    low_ = (low_ + part.below) << shift;
    range_ = range << shift;
    held_ += shift;
    shifted_ += shift;
    if (held_ > kMostHeld) WriteBytes();
  }

  // Codes a character in its context, which learns from it.
  template <class Context>
  void Encode(Context& context, unsigned character) {
    const unsigned index = context.IndexOf(character);
    EncodeIndex(context, index);
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
    Take(found.part);
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

  void Take(const Part& part) {
    const std::uint32_t low = low_ + part.below;
    const std::uint32_t range = part.end - part.below;
    const int shift = arithmetic::Widening<Setup::kBits>(low, range);
    code_ = ((code_ - part.below) << shift) | static_cast<std::uint32_t>(reader_.GetBits(shift));
    low_ = (low << shift) & kWindowMask;
    range_ = range << shift;
  }

  BitReader reader_;
  std::uint32_t code_;  // the code value less the low end
  std::uint32_t low_ = 0;
  std::uint32_t range_ = 1U << Setup::kBits;
};

extern template class ArithmeticEncoder<FirstSetup>;
extern template class ArithmeticEncoder<SecondSetup>;

}  // namespace marovia
