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
#include <cstdint>

#include "coding/bit_stream.h"
#include "coding/contexts.h"

namespace marovia {

namespace arithmetic {

// By the length of an interval in a window of Bits bits: how often it can be doubled before it
// exceeds the window.
template <int Bits>
inline constexpr std::array<std::uint8_t, (1U << Bits) + 1> kDoublings = [] {
  std::array<std::uint8_t, (1U << Bits) + 1> doublings{};
  for (std::uint32_t range = 1; range <= 1U << Bits; ++range) {
    while (range << (doublings[range] + 1) <= 1U << Bits) ++doublings[range];
  }
  return doublings;
}();

// How far an interval widens: `most` times, or once less.
struct Widening {
  int most;
  unsigned less;  // 0 or 1
};

// The interval of `range` values from `low` on, in a window of Bits bits, widens as often as it
// still fits a window's length from some multiple of half a window on. The range then is above a
// quarter of the window, so only the shift that brings it above the half and the one before it can
// be right.
template <int Bits>
Widening WideningOf(std::uint64_t low, std::uint32_t range) {
  const int most = kDoublings<Bits>[range];
  const std::uint64_t offset = (low << most) & ((1U << (Bits - 1)) - 1);
  // At most one and a half windows long.
  return {most, static_cast<unsigned>((offset + (range << most) - 1) >> Bits)};
}

}  // namespace arithmetic

// Both coders are small values that a loop may work on in a copy of its own, so that they stay in
// registers; the copy then takes the place of the original.

template <class Setup>
class ArithmeticEncoder {
 public:
  // Appends to `bytes`, which nothing else may change before DoneEncoding.
  explicit ArithmeticEncoder(Bytes& bytes) : bytes_(&bytes), start_(bytes.size()) {}

  // Codes the symbol that has this part of a range.
  MAROVIA_INLINE void EncodePart(const Part& part) {
    const std::uint32_t below = range_.Times(part.below);
    const std::uint32_t range = range_.Times(part.end) - below;
    const std::uint64_t low = low_ + below;
    const auto [most, less] = arithmetic::WideningOf<Setup::kBits>(low, range);
    low_ = low << most >> less;
    range_ = {range << most, less};
    spent_ += most - static_cast<int>(less);
    if (spent_ > mostSpent_) [[unlikely]]
      WriteBytes();
  }

  // Codes a character in its context, which learns from it.
  template <class Context>
  MAROVIA_INLINE void Encode(Context& context, unsigned character) {
    const unsigned index = context.IndexOf(character);
    EncodePart(context.PartOf(index));
    context.Update(index);
  }

  // Bits sent, and those that are still to follow once the next one is decided.
  [[nodiscard]] std::int64_t BitsSpent() const { return spent_; }
  [[nodiscard]] std::int64_t BitsToFollow() const { return CountToFollow(low_, Held(), Written()); }
  [[nodiscard]] std::int64_t BitsSent() const { return BitsSpent() - BitsToFollow(); }

  // Closes the interval with two more bits; the last byte is filled up with zeros.
  void DoneEncoding();

 private:
  // A symbol shifts by 11 bits at most and a carry takes one: they fit above this many.
  static constexpr int kMostHeld = 48;
  // So many bits are written at a time.
  static constexpr int kWritten = 32;

  // The bits of the low end that are not yet bytes.
  [[nodiscard]] int Held() const { return static_cast<int>(spent_ - mostSpent_) + kMostHeld; }
  [[nodiscard]] ByteView Written() const { return ByteView{*bytes_}.subspan(start_); }

  void WriteBytes() {
    low_ = Write(*bytes_, low_, Held());
    mostSpent_ += kWritten;
  }

  // These take values, not the coder, whose address would keep it out of the registers.
  // Moves the first bytes of the `held` lowest bits of a low end to the others; returns the rest.
  static std::uint64_t Write(Bytes& bytes, std::uint64_t low, int held);
  static std::uint64_t Carry(Bytes& bytes, std::uint64_t low, int held);
  static std::int64_t CountToFollow(std::uint64_t low, int held, ByteView written);

  // The low end: its lowest Held() bits; above those, a carry.
  std::uint64_t low_ = 0;
  arithmetic::Range range_{1U << Setup::kBits, 0};
  std::int64_t spent_ = 0;
  std::int64_t mostSpent_ = kMostHeld - Setup::kBits;  // before bytes have to be written
  Bytes* bytes_;
  std::size_t start_;
};

// The character of a symbol that a decoder found; its context learns from it.
template <class Context>
MAROVIA_INLINE unsigned Learn(Context& context, unsigned index) {
  const unsigned character = context.CharacterAt(index);
  context.Update(index);
  context.Prepare();
  return character;
}

template <class Setup>
class ArithmeticDecoder {
 public:
  explicit ArithmeticDecoder(ByteView stream) : reader_(stream) {}

  // The index of the next symbol in a context, to be learnt by it unless it is the end symbol.
  template <class Context>
  MAROVIA_INLINE unsigned DecodeIndex(const Context& context) {
    const auto code = static_cast<std::uint32_t>(reader_.Ahead() >> kUnused);
    if (context.FractionOfOthers() < arithmetic::kRare && TakeFirst(context, code)) return 1;
    const Found found = context.Find(code, range_);
    const std::uint32_t range = found.part.end - found.part.below;
    const std::uint64_t low = low_ + found.part.below;
    const auto [most, less] = arithmetic::WideningOf<Setup::kBits>(low, range);
    low_ = low << most >> less;
    range_ = {range << most, less};
    reader_.Lower(std::uint64_t{found.part.below} << kUnused);
    reader_.Drop(most - static_cast<int>(less));
    return found.index;
  }

  // The next character in a context, which learns from it.
  template <class Context>
  MAROVIA_INLINE unsigned Decode(Context& context) {
    return Learn(context, DecodeIndex(context));
  }

  // At most one code value's bits beyond the end: what is asked for after those does not count.
  [[nodiscard]] std::int64_t BitsRead() const {
    return std::min(reader_.BitsRead(), reader_.BitsPresent()) + Setup::kBits;
  }
  // Whether a whole code value has been read beyond the end of the stream: what was decoded last is
  // not in the file.
  [[nodiscard]] bool Exhausted() const { return reader_.BitsRead() >= reader_.BitsPresent(); }

 private:
  static constexpr int kUnused = 64 - Setup::kBits;
  static constexpr std::uint32_t kHalf = 1U << (Setup::kBits - 1);

  // Where the first symbol of a context is nearly certain, branching on it is much faster than
  // selecting: a few bytes may hold millions of such symbols. False where another comes, or where
  // the interval has to widen.
  template <class Context>
  MAROVIA_INLINE bool TakeFirst(const Context& context, std::uint32_t code) {
    const std::uint32_t below = range_.Times(context.FractionOfOthers());
    const std::uint32_t range = (range_.wide >> range_.halved) - below;
    if (code < below || range <= kHalf) [[unlikely]]
      return false;
    low_ += below;
    range_ = {range, 0};
    reader_.Lower(std::uint64_t{below} << kUnused);
    return true;
  }

  // What lies ahead begins with the code value less the low end.
  BitReader reader_;
  std::uint64_t low_ = 0;  // its lowest bits count
  arithmetic::Range range_{1U << Setup::kBits, 0};
};

extern template class ArithmeticEncoder<FirstSetup>;
extern template class ArithmeticEncoder<SecondSetup>;

}  // namespace marovia
