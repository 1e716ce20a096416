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

struct AswdrModels {
  std::array<TernaryContext<SecondSetup>, 3> numbers;
  std::array<BinaryContext, 2> signs;
  std::array<BinaryContext, 2> refinements;
};

// The characters coded last, whose contexts come next.
struct LastCharacters {
  unsigned number = 0;
  unsigned sign = 0;
  unsigned refinement = 0;
};

class AswdrSymbolWriter {
 public:
  using Models = AswdrModels;

  AswdrSymbolWriter(int charge, Bytes& bytes, Models& models)
      : charge_(charge), coder_(bytes), models_(&models) {}

  MAROVIA_INLINE void Found(std::uint32_t run, bool negative) {
    SendNumber(run);
    Send(models_->signs, last_.sign, negative ? 1 : 0);
  }
  void EndOfPass(std::uint32_t number) { SendNumber(number); }
  MAROVIA_INLINE void Refine(bool moves) {
    Send(models_->refinements, last_.refinement, moves ? 0 : 1);
  }

  [[nodiscard]] std::int64_t BitsSpent() const { return charge_ + coder_.BitsSpent(); }
  [[nodiscard]] std::int64_t BitsSent() const { return charge_ + coder_.BitsSent(); }

  void Finish() { coder_.DoneEncoding(); }

 private:
  MAROVIA_INLINE void Send(auto& contexts, unsigned& last, unsigned character) {
    coder_.Encode(contexts[last], character);
    last = character;
  }
  MAROVIA_INLINE void SendNumber(std::uint32_t number) {
    for (; number > 1; number >>= 1) Send(models_->numbers, last_.number, number & 1);
    Send(models_->numbers, last_.number, kEndMark);
  }

  int charge_;
  ArithmeticEncoder<SecondSetup> coder_;
  Models* models_;
  LastCharacters last_;
};

class AswdrSymbolReader {
 public:
  using Models = AswdrModels;

  AswdrSymbolReader(int charge, ByteView stream, Models& models)
      : charge_(charge), coder_(stream), models_(&models) {}

  MAROVIA_INLINE bool ReadNumber(std::uint32_t& number) {
    const unsigned end = FromCharacters(number, *this);
    if (coder_.Exhausted()) return false;
    if (end == kNoEnd) FailOnLongNumber();
    return true;
  }
  MAROVIA_INLINE bool ReadSign(bool& negative) {
    negative = Read(models_->signs, last_.sign) == 1;
    return !coder_.Exhausted();
  }
  MAROVIA_INLINE bool ReadRefinement(bool& moves) {
    moves = Read(models_->refinements, last_.refinement) == 0;
    return !coder_.Exhausted();
  }

  [[nodiscard]] std::int64_t BitsRead() const { return charge_ + coder_.BitsRead(); }

  // The next character of a number.
  MAROVIA_INLINE unsigned ReadCharacter() { return Read(models_->numbers, last_.number); }

 private:
  MAROVIA_INLINE unsigned Read(auto& contexts, unsigned& last) {
    return last = coder_.Decode(contexts[last]);
  }

  int charge_;
  ArithmeticDecoder<SecondSetup> coder_;
  Models* models_;
  LastCharacters last_;
};

}  // namespace marovia
