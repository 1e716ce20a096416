// Single bits packed into bytes, the first bit of a byte in its most significant place.
#pragma once

#include <cstdint>

#include "marovia/image.h"

namespace marovia {

class BitWriter {
 public:
  // Appends the `count` lowest bits of `bits`, the highest of them first; at most 56.
  void Append(std::uint64_t bits, int count) {
    held_ = (held_ << count) | bits;
    heldCount_ += count;
    sent_ += count;
    while (heldCount_ >= 8) {
      heldCount_ -= 8;
      bytes_.push_back(static_cast<std::uint8_t>(held_ >> heldCount_));
    }
  }

  void TransmitBit(unsigned bit) { Append(bit, 1); }

  // A 0, then the bit: a digit of a number whose end is marked by a 1.
  void TransmitDbl(unsigned bit) { Append(bit, 2); }

  [[nodiscard]] std::int64_t BitsSent() const { return sent_; }

  // The bytes so far, the last one filled up with zeros.
  Bytes Finish();

 private:
  std::uint64_t held_ = 0;  // the lowest heldCount_ bits await a full byte; the rest is stale
  int heldCount_ = 0;
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
    read_ += count;
    heldCount_ -= count;
    const std::uint64_t bits = held_ >> 1 >> (63 - count);
    held_ <<= count;
    return bits;
  }

  // Bits asked for, missing ones included.
  [[nodiscard]] std::int64_t BitsRead() const { return read_; }
  [[nodiscard]] std::int64_t BitsPresent() const {
    return 8 * static_cast<std::int64_t>(bytes_.size());
  }
  [[nodiscard]] bool PastEnd() const { return read_ > BitsPresent(); }

 private:
  void Refill();

  ByteView bytes_;
  std::size_t next_ = 0;
  std::uint64_t held_ = 0;  // the next heldCount_ bits from the top, zeros below them
  int heldCount_ = 0;
  std::int64_t read_ = 0;
};

}  // namespace marovia
