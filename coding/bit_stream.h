// Single bits packed into bytes, the first bit of a byte in its most significant place.
//
// Writer and reader are small values that a loop may work on in a copy of its own, so that they
// stay in registers; the copy then takes the place of the original.
#pragma once

#include <cstdint>

#include "marovia/image.h"

#include "base/bits.h"

namespace marovia {

class BitWriter {
 public:
  // Appends to `bytes`, which nothing else may change before Finish.
  explicit BitWriter(Bytes& bytes) : bytes_(&bytes) {}

  // Appends the `count` lowest bits of `bits`, whose others are 0, the highest first; at most 32.
  MAROVIA_INLINE void Append(std::uint64_t bits, int count) {
    held_ = held_ << count | bits;
    heldCount_ += count;
    sent_ += count;
    if (heldCount_ >= 32) {
      heldCount_ -= 32;
      Write(*bytes_, static_cast<std::uint32_t>(held_ >> heldCount_));
    }
  }

  void TransmitBit(unsigned bit) { Append(bit, 1); }

  [[nodiscard]] std::int64_t BitsSent() const { return sent_; }

  // Writes what is held; the last byte is filled up with zeros.
  void Finish();
  // After Finish: a byte that counts as no bits sent.
  void AppendByte(std::uint8_t byte) { bytes_->push_back(byte); }

 private:
  static void Write(Bytes& bytes, std::uint32_t bits);

  std::uint64_t held_ = 0;  // the lowest heldCount_ bits await their bytes; the rest is stale
  int heldCount_ = 0;       // below 32 between calls
  std::int64_t sent_ = 0;
  Bytes* bytes_;
};

// Reads what a BitWriter wrote. Past the end every bit is 0.
class BitReader {
 public:
  explicit BitReader(ByteView bytes);

  unsigned GetBit() { return static_cast<unsigned>(GetBits(1)); }

  // The next `count` bits, 0 to 32.
  MAROVIA_INLINE std::uint64_t GetBits(int count) {
    const std::uint64_t bits = ahead_ >> 1 >> (63 - count);
    Drop(count);
    return bits;
  }

  // A number of at most 15 digits, each after a 0, and the 1 that ends them; nothing is read where
  // there are more digits.
  MAROVIA_INLINE bool GetShortNumber(std::uint32_t& number);

  // The next bits, 32 or more, from the top.
  [[nodiscard]] std::uint64_t Ahead() const { return ahead_; }
  // Takes an amount, no larger than they are, off the bits ahead.
  void Lower(std::uint64_t amount) { ahead_ -= amount; }
  // Goes on by `count` bits, 0 to 32.
  MAROVIA_INLINE void Drop(int count) {
    ahead_ <<= count;
    read_ += count;
    if (read_ > refillAt_) [[unlikely]]
      Refill();
  }

  // Bits asked for, missing ones included.
  [[nodiscard]] std::int64_t BitsRead() const { return read_; }
  [[nodiscard]] std::int64_t BitsPresent() const {
    return 8 * static_cast<std::int64_t>(bytes_.size());
  }
  [[nodiscard]] bool PastEnd() const { return BitsRead() > BitsPresent(); }

 private:
  MAROVIA_INLINE void Refill() {
    const std::int64_t loaded = refillAt_ + 32;
    ahead_ |= FourBytes(bytes_, static_cast<std::size_t>(loaded / 8)) << (32 - (loaded - read_));
    refillAt_ = loaded;
  }

  // Four bytes from `next` on, zeros for those that are missing.
  static std::uint64_t FourBytes(ByteView bytes, std::size_t next) {
    if (next + 4 > bytes.size()) return LastBytes(bytes, next);
    const std::uint8_t* from = bytes.data() + next;
    return std::uint64_t{from[0]} << 24 | std::uint64_t{from[1]} << 16 |
           std::uint64_t{from[2]} << 8 | from[3];
  }
  static std::uint64_t LastBytes(ByteView bytes, std::size_t next);

  ByteView bytes_;
  std::uint64_t ahead_ = 0;  // zeros below the bits that are loaded
  std::int64_t read_ = 0;
  std::int64_t refillAt_ = -32;  // what has been loaded, less 32: how far it lasts
};

MAROVIA_INLINE bool BitReader::GetShortNumber(std::uint32_t& number) {
  // The flags are every other bit from the top; the first that is set ends the number.
  constexpr std::uint64_t kFlags = 0xAAAAAAAAU;
  const std::uint64_t flags = (ahead_ >> 32) & kFlags;
  if (flags == 0) return false;
  const int pairs = LeadingZeros(static_cast<std::uint32_t>(flags)) / 2;
  // Two bits a digit, 0 above it, the first digit on top; then the digits alone, the first on top.
  std::uint64_t digits = GetBits(2 * pairs + 1) >> 1;
  digits = (digits | digits >> 1) & 0x33333333U;
  digits = (digits | digits >> 2) & 0x0F0F0F0FU;
  digits = (digits | digits >> 4) & 0x00FF00FFU;
  digits = (digits | digits >> 8) & 0xFFFFU;
  number = (1U << pairs) | ReverseBits(static_cast<std::uint32_t>(digits), pairs);
  return true;
}

}  // namespace marovia
