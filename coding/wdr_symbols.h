// How the decisions of a pass become a stream: as raw bits, or as symbols of the arithmetic coder.
//
// A number v (a run, or the end of a pass) is sent as its binary digits without the leading one,
// the lowest first, and an end mark. As raw bits each digit follows a 0 and the end mark is a 1: 6
// = 110b is sent as 0 0, 0 1, and 1. A sign is one bit more, 1 for negative, and so is a
// refinement, 1 where the value moves away from 0.
//
// A writer has Found, EndOfPass, Refine, BitsSpent (to compare with the budget), BitsSent (to
// compare with a region's switch point, and to report) and Finish. A reader has ReadNumber,
// ReadSign, ReadRefinement, each false where the stream ended in it, and BitsRead.
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

// Calls send(digit) for the digits of a number, the lowest first, without the leading one.
template <class Send>
void ForDigits(std::uint32_t number, Send send) {
  for (; number > 1; number >>= 1) send(number & 1);
}

constexpr unsigned kEndMark = 2;  // the character that ends a number

// Takes a number back from the characters that read(character) gives, false where there is no next.
template <class Read>
bool FromCharacters(std::uint32_t& number, Read read) {
  std::uint32_t value = 0;
  int digits = 0;
  unsigned character = 0;
  while (true) {
    if (!read(character)) return false;
    if (character == kEndMark) break;
    if (digits == kMostDigits) FailOnLongNumber();
    value |= character << digits++;
  }
  number = value + (1U << digits);
  return true;
}

class BitSymbolWriter {
 public:
  explicit BitSymbolWriter(int charge) : charge_(charge) {}

  void Found(std::uint32_t run, bool negative) { AppendNumber(run, negative ? 0b11 : 0b10, 2); }
  void EndOfPass(std::uint32_t number) { AppendNumber(number, 0b1, 1); }
  void Refine(bool moves) { writer_.TransmitBit(moves ? 1 : 0); }

  [[nodiscard]] std::int64_t BitsSpent() const { return BitsSent(); }
  [[nodiscard]] std::int64_t BitsSent() const { return charge_ + writer_.BitsSent(); }

  // A byte of 128 ends the file, whether or not the last one was full.
  Bytes Finish();

 private:
  void AppendNumber(std::uint32_t number, unsigned end, int endBits) {
    std::uint64_t bits = 0;
    int count = 0;
    ForDigits(number, [&](std::uint32_t digit) {
      bits = bits << 2 | digit;
      count += 2;
    });
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
  BitSymbolReader(ByteView stream, int charge) : charge_(charge), reader_(stream) {}

  bool ReadNumber(std::uint32_t& number) {
    if (!reader_.GetShortNumber(number)) ReadLongNumber(number);
    return !reader_.PastEnd();
  }
  bool ReadSign(bool& negative) { return ReadBit(negative); }
  bool ReadRefinement(bool& moves) { return ReadBit(moves); }

  // The first missing bit counts, as the one that ended the stream; what was read after it does
  // not.
  [[nodiscard]] std::int64_t BitsRead() const {
    return charge_ + std::min(reader_.BitsRead(), reader_.BitsPresent() + 1);
  }

 private:
  // Digit by digit, up to the end of the stream.
  void ReadLongNumber(std::uint32_t& number);

  bool ReadBit(bool& bit) {
    bit = reader_.GetBit() != 0;
    return !reader_.PastEnd();
  }

  int charge_;
  BitReader reader_;
};

// Arithmetic WDR: a context for numbers (their end mark is character 2), one for signs and one for
// refinements, whose character is 0 where the value moves.
class WdrSymbolWriter {
 public:
  explicit WdrSymbolWriter(int charge) : charge_(charge) {}

  void Found(std::uint32_t run, bool negative) {
    SendNumber(run);
    Send(contexts_[1], negative ? 1 : 0);
  }
  void EndOfPass(std::uint32_t number) { SendNumber(number); }
  void Refine(bool moves) { Send(contexts_[2], moves ? 0 : 1); }

  [[nodiscard]] std::int64_t BitsSpent() const { return charge_ + coder_.BitsSpent(); }
  [[nodiscard]] std::int64_t BitsSent() const { return charge_ + coder_.BitsSent(); }

  // Codes the end symbol in the context used last and closes the stream.
  Bytes Finish();

 private:
  using Context = TernaryContext<FirstSetup>;

  void Send(Context& context, unsigned character) {
    last_ = static_cast<std::size_t>(&context - contexts_.data());
    coder_.Encode(context, character);
  }
  void SendNumber(std::uint32_t number) {
    ForDigits(number, [this](std::uint32_t digit) { Send(contexts_[0], digit); });
    Send(contexts_[0], kEndMark);
  }

  int charge_;
  ArithmeticEncoder<FirstSetup> coder_;
  std::array<Context, 3> contexts_;  // of numbers, signs, refinements
  std::size_t last_ = 0;
};

class WdrSymbolReader {
 public:
  WdrSymbolReader(ByteView stream, int charge) : charge_(charge), coder_(stream) {}

  bool ReadNumber(std::uint32_t& number) {
    return FromCharacters(number,
                          [this](unsigned& character) { return Read(contexts_[0], character); });
  }
  bool ReadSign(bool& negative) {
    unsigned character = 0;
    const bool read = Read(contexts_[1], character);
    negative = character == 1;
    return read;
  }
  bool ReadRefinement(bool& moves) {
    unsigned character = 0;
    const bool read = Read(contexts_[2], character);
    moves = character == 0;
    return read;
  }

  [[nodiscard]] std::int64_t BitsRead() const { return charge_ + coder_.BitsRead(); }

 private:
  using Context = TernaryContext<FirstSetup>;

  // False at the end symbol and past the end of the stream.
  bool Read(Context& context, unsigned& character) {
    const unsigned index = coder_.DecodeIndex(context);
    if (index == Context::kEndIndex || coder_.Exhausted()) return false;
    character = context.CharacterAt(index);
    context.Update(index);
    return true;
  }

  int charge_;
  ArithmeticDecoder<FirstSetup> coder_;
  std::array<Context, 3> contexts_;
};

}  // namespace marovia
