// Arithmetic ASWDR: each kind of symbol is coded in a context that the symbol of its kind before
// chose.
//
// Numbers have three contexts (after a digit 0, a digit 1, an end mark), signs two and refinements
// two; the two-character ones start as after a 0, numbers as after a digit 0. They carry over from
// pass to pass. A refinement is 0 where the value moves away from 0, the opposite of the raw bit.
#pragma once

#include <array>

#include "coding/wdr_symbols.h"

namespace marovia {

class AswdrSymbolWriter {
 public:
  explicit AswdrSymbolWriter(int charge) : charge_(charge) {}

  void Found(std::uint32_t run, bool negative) {
    SendNumber(run);
    Send(signs_, sign_, negative ? 1 : 0);
  }
  void EndOfPass(std::uint32_t number) { SendNumber(number); }
  void Refine(bool moves) { Send(refinements_, refinement_, moves ? 0 : 1); }

  [[nodiscard]] std::int64_t BitsSpent() const { return charge_ + coder_.BitsSpent(); }
  [[nodiscard]] std::int64_t BitsSent() const { return charge_ + coder_.BitsSent(); }

  Bytes Finish() { return coder_.DoneEncoding(); }

 private:
  template <class Contexts>
  void Send(Contexts& contexts, unsigned& last, unsigned character) {
    coder_.Encode(contexts[last], character);
    last = character;
  }
  void SendNumber(std::uint32_t number) {
    ForDigits(number, [this](std::uint32_t digit) { Send(numbers_, number_, digit); });
    Send(numbers_, number_, 2);
  }

  int charge_;
  ArithmeticEncoder<SecondSetup> coder_;
  std::array<TernaryContext<SecondSetup>, 3> numbers_;
  std::array<BinaryContext, 2> signs_;
  std::array<BinaryContext, 2> refinements_;
  unsigned number_ = 0;
  unsigned sign_ = 0;
  unsigned refinement_ = 0;
};

class AswdrSymbolReader {
 public:
  AswdrSymbolReader(ByteView stream, int charge) : charge_(charge), coder_(stream) {}

  bool ReadNumber(std::uint32_t& number) {
    std::uint32_t value = 0;
    int digits = 0;
    while (true) {
      if (!Read(numbers_, number_)) return false;
      if (number_ == 2) break;
      if (digits == kMostDigits) FailOnLongNumber();
      value |= number_ << digits++;
    }
    number = value + (1U << digits);
    return true;
  }
  bool ReadSign(bool& negative) {
    const bool read = Read(signs_, sign_);
    negative = sign_ == 1;
    return read;
  }
  bool ReadRefinement(bool& moves) {
    const bool read = Read(refinements_, refinement_);
    moves = refinement_ == 0;
    return read;
  }

  [[nodiscard]] std::int64_t BitsRead() const { return charge_ + coder_.BitsRead(); }

 private:
  // The character read becomes `last`; false past the end of the stream.
  template <class Contexts>
  bool Read(Contexts& contexts, unsigned& last) {
    last = coder_.Decode(contexts[last]);
    return !coder_.Exhausted();
  }

  int charge_;
  ArithmeticDecoder<SecondSetup> coder_;
  std::array<TernaryContext<SecondSetup>, 3> numbers_;
  std::array<BinaryContext, 2> signs_;
  std::array<BinaryContext, 2> refinements_;
  unsigned number_ = 0;
  unsigned sign_ = 0;
  unsigned refinement_ = 0;
};

}  // namespace marovia
