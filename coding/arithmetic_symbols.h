// How the decisions of a pass become symbols of the arithmetic coder, in the contexts of WDR and in
// those of ASWDR. Both carry over from pass to pass. A refinement is 0 where the value moves away
// from 0, the opposite of the raw bit.
#pragma once

#include <array>
#include <cstdint>

#include "coding/arithmetic_coder.h"
#include "coding/raw_symbols.h"

namespace marovia {

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

// WDR has a context for numbers, one for signs and one for refinements, all of three characters.
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
  void Finish() {
    coder_.EncodePart((this->*last_).PartOfEnd());
    coder_.DoneEncoding();
  }

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

// ASWDR codes each kind of symbol in a context that the symbol of its kind before chose: three for
// numbers (after a digit 0, a digit 1, an end mark), two for signs and two for refinements. The
// first symbols are coded as after a 0.
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
