// How the decisions of a pass become a stream, here of raw bits.
//
// A number v (a run, or the end of a pass) is sent as its binary digits without the leading one,
// the lowest first, and an end mark. Each digit follows a 0 and the end mark is a 1: 6
// = 110b is sent as 0 0, 0 1, and 1. A sign is one bit more, 1 for negative, and so is a
// refinement, 1 where the value moves away from 0.
//
// A writer has Found, EndOfPass, Refine, BitsSpent (to compare with the budget), BitsSent (to
// compare with a region's switch point, and to report) and Finish. A reader has ReadNumber,
// ReadSign, ReadRefinement, each false where the stream ended in it, and BitsRead. Both are small
// values, contexts included, that a loop may work on in a copy of its own.
#pragma once

#include <algorithm>
#include <cstdint>

#include "coding/bit_stream.h"

namespace marovia {

// No number in a stream exceeds this; a damaged one that does is Error kMalformed.
constexpr int kMostDigits = 30;
[[noreturn]] void FailOnLongNumber();

// What follows a stream of raw bits.
inline constexpr std::uint8_t kEndByte = 128;

class BitSymbolWriter {
 public:
  BitSymbolWriter(int charge, Bytes& bytes) : charge_(charge), writer_(bytes) {}

  MAROVIA_INLINE void Found(std::uint32_t run, bool negative) {
    AppendNumber(run, negative ? 0b11 : 0b10, 2);
  }
  void EndOfPass(std::uint32_t number) { AppendNumber(number, 0b1, 1); }
  MAROVIA_INLINE void Refine(bool moves) { writer_.TransmitBit(moves ? 1 : 0); }

  [[nodiscard]] std::int64_t BitsSpent() const { return BitsSent(); }
  [[nodiscard]] std::int64_t BitsSent() const { return charge_ + writer_.BitsSent(); }

  // kEndByte ends the stream, whether or not the last one was full.
  void Finish();

 private:
  MAROVIA_INLINE void AppendNumber(std::uint32_t number, unsigned end, int endBits) {
    std::uint64_t bits = 0;
    int count = 0;
    for (; number > 1; number >>= 1) {
      bits = bits << 2 | (number & 1);
      count += 2;
    }
    // The digits may fill 60 bits, more than one append takes.
    if (count > 28) {
      writer_.Append(bits >> 28, count - 28);
      bits &= 0xFFFFFFFU;
      count = 28;
    }
    writer_.Append(bits << endBits | end, count + endBits);
  }

  int charge_;
  BitWriter writer_;
};

class BitSymbolReader {
 public:
  BitSymbolReader(int charge, ByteView stream) : charge_(charge), reader_(stream) {}

  MAROVIA_INLINE bool ReadNumber(std::uint32_t& number) {
    if (!reader_.GetShortNumber(number)) [[unlikely]] {
      const LongNumber read = ReadLongNumber(reader_);
      reader_ = read.reader;
      number = read.number;
    }
    return !reader_.PastEnd();
  }
  MAROVIA_INLINE bool ReadSign(bool& negative) { return ReadBit(negative); }
  MAROVIA_INLINE bool ReadRefinement(bool& moves) { return ReadBit(moves); }

  // The first missing bit counts, as the one that ended the stream; what was read after it does
  // not.
  [[nodiscard]] std::int64_t BitsRead() const {
    return charge_ + std::min(reader_.BitsRead(), reader_.BitsPresent() + 1);
  }

 private:
  struct LongNumber {
    BitReader reader;  // behind the number
    std::uint32_t number = 0;
  };
  // Digit by digit, up to the end of the stream.
  static LongNumber ReadLongNumber(BitReader reader);

  MAROVIA_INLINE bool ReadBit(bool& bit) {
    bit = reader_.GetBit() != 0;
    return !reader_.PastEnd();
  }

  int charge_;
  BitReader reader_;
};

}  // namespace marovia
