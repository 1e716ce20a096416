// Single bits packed into bytes, the first bit of a byte in its most significant place.
#pragma once

#include <cstdint>

#include "marovia/image.h"

#include "base/bits.h"

namespace marovia {

class BitWriter {
 public:
  // Appends the `count` lowest bits of `bits`, whose others are 0, the highest first; at most 32.
  void Append(std::uint64_t bits, int count) {
    held_ = held_ << count | bits;
    heldCount_ += count;
    sent_ += count;
    if (heldCount_ >= 32) WriteHalf();
  }

  void TransmitBit(unsigned bit) { Append(bit, 1); }

  // A 0, then the bit: a digit of a number whose end is marked by a 1.
  void TransmitDbl(unsigned bit) { Append(bit, 2); }

  [[nodiscard]] std::int64_t BitsSent() const { return sent_; }

  // The bytes so far, the last one filled up with zeros.
  Bytes Finish();

 private:
  void WriteHalf();

  std::uint64_t held_ = 0;  // the lowest heldCount_ bits await their bytes; the rest is stale
  int heldCount_ = 0;       // below 32 between calls
  std::int64_t sent_ = 0;
  Bytes bytes_;
};

// Reads what a BitWriter wrote. Past the end every bit is 0.
class BitReader {
 public:
  explicit BitReader(ByteView bytes) : bytes_(bytes) {}

  unsigned GetBit() { return static_cast<unsigned>(GetBits(1)); }

  // The next `count` bits, 0 to 32.
  std::uint64_t GetBits(int count) {
    if (heldCount_ < count) Refill();
    return Drop(count);
  }

  // A number of at most 15 digits, each after a 0, and the 1 that ends them; nothing is read where
  // there are more digits.
  bool GetShortNumber(std::uint32_t& number);

  // Bits asked for, missing ones included.
  [[nodiscard]] std::int64_t BitsRead() const { return 8 * loaded_ - heldCount_; }
  [[nodiscard]] std::int64_t BitsPresent() const {
    return 8 * static_cast<std::int64_t>(bytes_.size());
  }
  [[nodiscard]] bool PastEnd() const { return NearEnd() && BitsRead() > BitsPresent(); }
  // Whether zeros that stand in for missing bytes have been loaded; before that nothing is missing.
  [[nodiscard]] bool NearEnd() const { return loaded_ > static_cast<std::int64_t>(bytes_.size()); }

 private:
  std::uint64_t Drop(int count) {
    heldCount_ -= count;
    const std::uint64_t bits = held_ >> 1 >> (63 - count);
    held_ <<= count;
    return bits;
  }

  // Leaves more than 32 bits held.
  void Refill() {
    const auto next = static_cast<std::size_t>(loaded_);
    std::uint64_t bits = 0;
    if (next + 4 <= bytes_.size()) {
      const std::uint8_t* from = bytes_.data() + next;
      bits = std::uint64_t{from[0]} << 24 | std::uint64_t{from[1]} << 16 |
             std::uint64_t{from[2]} << 8 | from[3];
    } else {
      bits = LastBytes(next);
    }
    held_ |= bits << (32 - heldCount_);
    heldCount_ += 32;
    loaded_ += 4;
  }

  // Four bytes from `next` on, zeros for those that are missing.
  [[nodiscard]] std::uint64_t LastBytes(std::size_t next) const;

  ByteView bytes_;
  std::int64_t loaded_ = 0;  // bytes, those past the end included
  std::uint64_t held_ = 0;   // the next heldCount_ bits from the top, zeros below them
  int heldCount_ = 0;        // at most 32 before a Refill
};

inline bool BitReader::GetShortNumber(std::uint32_t& number) {
  if (heldCount_ < 32) Refill();
  // The flags are every other bit from the top; the first that is set ends the number.
  constexpr std::uint64_t kFlags = 0xAAAAAAAAU;
  const std::uint64_t flags = (held_ >> 32) & kFlags;
  if (flags == 0) return false;
  const int pairs = LeadingZeros(static_cast<std::uint32_t>(flags)) / 2;
  // Two bits a digit, 0 above it, the first digit on top; then the digits alone, the first on top.
  std::uint64_t digits = Drop(2 * pairs + 1) >> 1;
  digits = (digits | digits >> 1) & 0x33333333U;
  digits = (digits | digits >> 2) & 0x0F0F0F0FU;
  digits = (digits | digits >> 4) & 0x00FF00FFU;
  digits = (digits | digits >> 8) & 0xFFFFU;
  number = (1U << pairs) | ReverseBits(static_cast<std::uint32_t>(digits), pairs);
  return true;
}

}  // namespace marovia
