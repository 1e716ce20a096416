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

// The contexts of one kind of symbol, and the character coded last, whose context comes next.
template <class Context, std::size_t Count>
struct ChainedContexts {
  std::array<Context, Count> contexts;
  unsigned last = 0;

  Context& Next() { return contexts[last]; }
};

class AswdrSymbolWriter {
 public:
  explicit AswdrSymbolWriter(int charge) : charge_(charge) {}

  void Found(std::uint32_t run, bool negative) {
    SendNumber(run);
    Send(signs_, negative ? 1 : 0);
  }
  void EndOfPass(std::uint32_t number) { SendNumber(number); }
  void Refine(bool moves) { Send(refinements_, moves ? 0 : 1); }

  [[nodiscard]] std::int64_t BitsSpent() const { return charge_ + coder_.BitsSpent(); }
  [[nodiscard]] std::int64_t BitsSent() const { return charge_ + coder_.BitsSent(); }

  Bytes Finish() { return coder_.DoneEncoding(); }

 private:
  template <class Chain>
  void Send(Chain& chain, unsigned character) {
    coder_.Encode(chain.Next(), character);
    chain.last = character;
  }
  void SendNumber(std::uint32_t number) {
    ForDigits(number, [this](std::uint32_t digit) { Send(numbers_, digit); });
    Send(numbers_, kEndMark);
  }

  int charge_;
  ArithmeticEncoder<SecondSetup> coder_;
  ChainedContexts<TernaryContext<SecondSetup>, 3> numbers_;
  ChainedContexts<BinaryContext, 2> signs_;
  ChainedContexts<BinaryContext, 2> refinements_;
};

class AswdrSymbolReader {
 public:
  AswdrSymbolReader(ByteView stream, int charge) : charge_(charge), coder_(stream) {}

  bool ReadNumber(std::uint32_t& number) {
    return FromCharacters(number,
                          [this](unsigned& character) { return Read(numbers_, character); });
  }
  bool ReadSign(bool& negative) {
    unsigned character = 0;
    const bool read = Read(signs_, character);
    negative = character == 1;
    return read;
  }
  bool ReadRefinement(bool& moves) {
    unsigned character = 0;
    const bool read = Read(refinements_, character);
    moves = character == 0;
    return read;
  }

  [[nodiscard]] std::int64_t BitsRead() const { return charge_ + coder_.BitsRead(); }

 private:
  // False past the end of the stream.
  template <class Chain>
  bool Read(Chain& chain, unsigned& character) {
    character = coder_.Decode(chain.Next());
    chain.last = character;
    return !coder_.Exhausted();
  }

  int charge_;
  ArithmeticDecoder<SecondSetup> coder_;
  ChainedContexts<TernaryContext<SecondSetup>, 3> numbers_;
  ChainedContexts<BinaryContext, 2> signs_;
  ChainedContexts<BinaryContext, 2> refinements_;
};

}  // namespace marovia
