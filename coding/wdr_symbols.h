// How the decisions of a pass become a stream: as raw bits, or as symbols of the arithmetic coder.
//
// A number v (a run, or the end of a pass) is sent as its binary digits without the leading one,
// the lowest first, and an end mark. As raw bits each digit follows a 0 and the end mark is a 1: 6
// = 110b is sent as 0 0, 0 1, and 1. A sign is one bit more, 1 for negative, and so is a
// refinement, 1 where the value moves away from 0.
//
// A writer has Found, EndOfPass, Refine, BitsSpent (to compare with the budget), BitsSent (to
// compare with a region's switch point, and to report) and Finish. A reader has ReadNumber,
// ReadSign, ReadRefinement, each false where the stream ended in it, and BitsRead. Both are small
// values, contexts included, that a loop may work on in a copy of its own.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "coding/arithmetic_coder.h"
#include "coding/bit_stream.h"

namespace marovia {

// No number in a stream exceeds this; a damaged one that does is Error kMalformed.
constexpr int kMostDigits = 30;
[[noreturn]] void FailOnLongNumber();

constexpr unsigned kEndMark = 2;      // the character that ends a number
constexpr unsigned kEndOfStream = 3;  // what an end symbol counts as

// Takes a number back from its characters, up to one that is no digit; that one is returned, or
// kNoEnd where more digits came than a number has.
constexpr unsigned kNoEnd = 4;
template <class Reader>
MAROVIA_INLINE unsigned FromCharacters(std::uint32_t& number, Reader& reader) {
  std::uint32_t value = 0;
  int digits = 0;
  unsigned character = reader.ReadCharacter();
  for (; character < kEndMark; character = reader.ReadCharacter()) {
    if (digits == kMostDigits) return kNoEnd;
    value |= character << digits++;
  }
  number = value + (1U << digits);
  return character;
}

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

// Arithmetic WDR: a context for numbers (their end mark is character 2), one for signs and one for
// refinements, whose character is 0 where the value moves.
using WdrContext = TernaryContext<FirstSetup>;

class WdrSymbolWriter {
 public:
  WdrSymbolWriter(int charge, Bytes& bytes) : charge_(charge), coder_(bytes) {}

  MAROVIA_INLINE void Found(std::uint32_t run, bool negative) {
    SendNumber(run);
    coder_.Encode(signs_, negative ? 1 : 0);
    last_ = &WdrSymbolWriter::signs_;
  }
  void EndOfPass(std::uint32_t number) { SendNumber(number); }
  MAROVIA_INLINE void Refine(bool moves) {
    coder_.Encode(refinements_, moves ? 0 : 1);
    last_ = &WdrSymbolWriter::refinements_;
  }

  [[nodiscard]] std::int64_t BitsSpent() const { return charge_ + coder_.BitsSpent(); }
  [[nodiscard]] std::int64_t BitsSent() const { return charge_ + coder_.BitsSent(); }

  // Codes the end symbol in the context used last and closes the stream.
  void Finish();

 private:
  MAROVIA_INLINE void SendNumber(std::uint32_t number) {
    for (; number > 1; number >>= 1) coder_.Encode(numbers_, number & 1);
    coder_.Encode(numbers_, kEndMark);
    last_ = &WdrSymbolWriter::numbers_;
  }

  int charge_;
  ArithmeticEncoder<FirstSetup> coder_;
  WdrContext numbers_;
  WdrContext signs_;
  WdrContext refinements_;
  WdrContext WdrSymbolWriter::*last_ = &WdrSymbolWriter::numbers_;  // what was coded last is in it
};

class WdrSymbolReader {
 public:
  WdrSymbolReader(int charge, ByteView stream) : charge_(charge), coder_(stream) {}

  MAROVIA_INLINE bool ReadNumber(std::uint32_t& number) {
    const unsigned end = FromCharacters(number, *this);
    if (end == kEndOfStream || coder_.Exhausted()) return false;
    if (end == kNoEnd) FailOnLongNumber();
    return true;
  }
  MAROVIA_INLINE bool ReadSign(bool& negative) {
    const unsigned character = Read(signs_);
    negative = character == 1;
    return character != kEndOfStream && !coder_.Exhausted();
  }
  MAROVIA_INLINE bool ReadRefinement(bool& moves) {
    const unsigned character = Read(refinements_);
    moves = character == 0;
    return character != kEndOfStream && !coder_.Exhausted();
  }

  [[nodiscard]] std::int64_t BitsRead() const { return charge_ + coder_.BitsRead(); }

  // The next character of a number, or kEndOfStream.
  MAROVIA_INLINE unsigned ReadCharacter() { return Read(numbers_); }

 private:
  MAROVIA_INLINE unsigned Read(WdrContext& context) {
    const unsigned index = coder_.DecodeIndex(context);
    if (index == WdrContext::kEndIndex) [[unlikely]]
      return kEndOfStream;
    return Learn(context, index);
  }

  int charge_;
  ArithmeticDecoder<FirstSetup> coder_;
  WdrContext numbers_;
  WdrContext signs_;
  WdrContext refinements_;
};

}  // namespace marovia
