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
  AswdrSymbolWriter(int charge, Bytes& bytes) : charge_(charge), coder_(bytes) {}

  MAROVIA_INLINE void Found(std::uint32_t run, bool negative) {
    SendNumber(run);
    coder_.Encode(signs_, negative ? 1 : 0);
  }
  void EndOfPass(std::uint32_t number) { SendNumber(number); }
  MAROVIA_INLINE void Refine(bool moves) { coder_.Encode(refinements_, moves ? 0 : 1); }

  [[nodiscard]] std::int64_t BitsSpent() const { return charge_ + coder_.BitsSpent(); }
  [[nodiscard]] std::int64_t BitsSent() const { return charge_ + coder_.BitsSent(); }

  void Finish() { coder_.DoneEncoding(); }

 private:
  MAROVIA_INLINE void SendNumber(std::uint32_t number) {
    for (; number > 1; number >>= 1) SendCharacter(number & 1);
    SendCharacter(kEndMark);
  }
  MAROVIA_INLINE void SendCharacter(unsigned character) {
    coder_.Encode(numbers_[last_], character);
    last_ = character;
  }

  int charge_;
  ArithmeticEncoder<SecondSetup> coder_;
  std::array<TernaryContext<SecondSetup>, 3> numbers_;
  unsigned last_ = 0;  // the last character of a number
  BinaryContexts signs_;
  BinaryContexts refinements_;
};

class AswdrSymbolReader {
 public:
  AswdrSymbolReader(int charge, ByteView stream) : charge_(charge), coder_(stream) {}

  MAROVIA_INLINE bool ReadNumber(std::uint32_t& number) {
    const unsigned end = FromCharacters(number, *this);
    if (coder_.Exhausted()) return false;
    if (end == kNoEnd) FailOnLongNumber();
    return true;
  }
  MAROVIA_INLINE bool ReadSign(bool& negative) {
    negative = coder_.Decode(signs_) == 1;
    return !coder_.Exhausted();
  }
  MAROVIA_INLINE bool ReadRefinement(bool& moves) {
    moves = coder_.Decode(refinements_) == 0;
    return !coder_.Exhausted();
  }

  [[nodiscard]] std::int64_t BitsRead() const { return charge_ + coder_.BitsRead(); }

  // The next character of a number.
  MAROVIA_INLINE unsigned ReadCharacter() { return last_ = coder_.Decode(numbers_[last_]); }

 private:
  int charge_;
  ArithmeticDecoder<SecondSetup> coder_;
  std::array<TernaryContext<SecondSetup>, 3> numbers_;
  unsigned last_ = 0;  // the last character of a number
  BinaryContexts signs_;
  BinaryContexts refinements_;
};

}  // namespace marovia
