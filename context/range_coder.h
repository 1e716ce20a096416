// A binary range coder: each decision takes the part of the interval [low, low + range) that its
// probability gives it, a 1 the lower one. What is certain of low leaves it byte by byte.
//
// Both directions are a few words without what is large, so that a loop can keep a copy of them in
// registers. They answer to the same calls: a writer is told the bit and returns it, a reader
// returns what the stream says.
#pragma once

#include <cstdint>

#include "marovia/image.h"

#include "base/bits.h"
#include "context/counters.h"

namespace marovia {

inline constexpr std::uint32_t kLeastRange = 1U << 24;

// All bits set where a < b, else none; no jump depends on it.
MAROVIA_INLINE std::uint32_t MaskOfLess(std::uint32_t a, std::uint32_t b) {
  return static_cast<std::uint32_t>((static_cast<std::int64_t>(a) - static_cast<std::int64_t>(b)) >>
                                    32);
}

MAROVIA_INLINE std::uint32_t Choose(std::uint32_t mask, std::uint32_t ifSet, std::uint32_t ifNot) {
  return ifNot ^ ((ifSet ^ ifNot) & mask);
}

// The bytes that a writer has shifted out. A carry may still come up to the last one that is not
// 255: that one is held, and those after it wait.
class RangeOutput {
 public:
  // Appends to `bytes`; Full() once it has `limit` of them.
  RangeOutput(Bytes& bytes, std::int64_t limit) : bytes_(&bytes), limit_(limit) {}

  // Takes the bits 24 to 31 of low, and the carry above them.
  void ShiftOut(std::uint64_t low);
  // The interval's end: as few bytes as make every decision certain whatever follows.
  void Finish(std::uint64_t low, std::uint32_t range);

  [[nodiscard]] bool Full() const { return Settled() >= limit_; }
  // Bytes that nothing can change any more, with those that were there before.
  [[nodiscard]] std::int64_t Settled() const { return static_cast<std::int64_t>(bytes_->size()); }

 private:
  void Settle(int carry);

  Bytes* bytes_;
  std::int64_t limit_;
  int held_ = -1;
  std::int64_t waiting_ = 0;
};

class RangeWriter {
 public:
  static constexpr bool kWrites = true;

  explicit RangeWriter(RangeOutput& output) : output_(&output) {}

  // A decision on which what follows depends, so that a jump is as good as anything.
  template <Pace kLimits = kPace>
  MAROVIA_INLINE bool Decide(Counter& counter, bool bit) {
    const std::uint32_t bound = (range_ >> 16) * counter.probability;
    if (bit) {
      range_ = bound;
      Learn<kLimits>(counter, 0xFFFF);
    } else {
      low_ += bound;
      range_ -= bound;
      Learn<kLimits>(counter, 0);
    }
    Renormalise();
    return bit;
  }

  // One that is as often a 1 as a 0, without a jump; `even` has all bits set where the counter has
  // no say. Returns all bits set for a 1.
  MAROVIA_INLINE std::uint32_t DecideBlindly(Counter& counter, std::uint32_t even,
                                             std::uint32_t ones) {
    const std::uint32_t bound = Choose(even, range_ >> 1, (range_ >> 16) * counter.probability);
    low_ += bound & ~ones;
    range_ = Choose(ones, bound, range_ - bound);
    Learn(counter, ones & 0xFFFF);
    Renormalise();
    return ones;
  }

  [[nodiscard]] MAROVIA_INLINE bool Ended() const { return false; }
  // Whether nothing of what follows would be kept.
  [[nodiscard]] bool Done() const { return output_->Full(); }
  void Finish() { output_->Finish(low_, range_); }

 private:
  MAROVIA_INLINE void Renormalise() {
    while (range_ < kLeastRange) {
      output_->ShiftOut(low_);
      low_ = (low_ & 0xFFFFFF) << 8;
      range_ <<= 8;
    }
  }

  RangeOutput* output_;
  std::uint64_t low_ = 0;
  std::uint32_t range_ = 0xFFFFFFFF;
};

// Where the stream has ended, bytes count as 0, and as unknown: `unknown_` is how much larger the
// code might be. A 0 is certain whatever they are. The first 1 that is not ends decoding: from then
// on every decision is a 0 without effect.
class RangeReader {
 public:
  static constexpr bool kWrites = false;

  explicit RangeReader(ByteView stream) : next_(stream.data()), end_(next_ + stream.size()) {
    for (int i = 0; i < 4; ++i) TakeByte();
  }

  template <Pace kLimits = kPace>
  MAROVIA_INLINE bool Decide(Counter& counter, bool /*bit*/) {
    const std::uint32_t bound = (range_ >> 16) * counter.probability;
    if (code_ < bound) {
      if (unknown_ >= bound - code_) [[unlikely]]
        return End();
      range_ = bound;
      Learn<kLimits>(counter, 0xFFFF);
      Renormalise();
      return true;
    }
    code_ -= bound;
    range_ -= bound;
    Learn<kLimits>(counter, 0);
    Renormalise();
    return false;
  }

  MAROVIA_INLINE std::uint32_t DecideBlindly(Counter& counter, std::uint32_t even,
                                             std::uint32_t /*ones*/) {
    const std::uint32_t bound = Choose(even, range_ >> 1, (range_ >> 16) * counter.probability);
    const std::uint32_t ones = MaskOfLess(code_, bound);
    if (unknown_ != 0) [[unlikely]] {
      if (code_ < bound && unknown_ >= bound - code_) {
        End();
        return 0;
      }
    }
    code_ -= bound & ~ones;
    range_ = Choose(ones, bound, range_ - bound);
    Learn(counter, ones & 0xFFFF);
    Renormalise();
    return ones;
  }

  [[nodiscard]] MAROVIA_INLINE bool Ended() const { return ended_; }
  [[nodiscard]] bool Done() const { return ended_; }
  [[nodiscard]] const std::uint8_t* Next() const { return next_; }

 private:
  bool End() {
    ended_ = true;
    unknown_ = 0xFFFFFFFF;
    return false;
  }

  MAROVIA_INLINE void TakeByte() {
    code_ <<= 8;
    if (next_ != end_) {
      code_ |= *next_++;
    } else {
      unknown_ = unknown_ << 8 | 0xFF;
    }
  }

  MAROVIA_INLINE void Renormalise() {
    while (range_ < kLeastRange) {
      range_ <<= 8;
      TakeByte();
    }
  }

  const std::uint8_t* next_;
  const std::uint8_t* end_;
  std::uint32_t code_ = 0;
  std::uint32_t unknown_ = 0;
  std::uint32_t range_ = 0xFFFFFFFF;
  bool ended_ = false;
};

}  // namespace marovia
