// How the decisions of the passes become bits, one bit of an interval at a time. Every Code, and
// what rests on it, works in both directions: to write, it takes what is to be coded and returns
// it; to read, it returns what comes next, whatever it is given.
#pragma once

#include "tests/support/testing.h"

namespace marovia::plain {

// Thrown where coding or decoding ends in the middle of a pass: the budget is reached, or the
// stream holds nothing more.
struct CodingEnds {};

// Single bits, the most significant first in each byte.
struct Bits {
  std::int32_t count = 0;               // the header's charge included
  std::optional<ByteView> stream = {};  // to read
  Bytes written = {};
  int pastEnd = 0;  // how many of the bits read lie behind the end of the stream; they are 0
  std::size_t next = 0;

  int Code(int bit);
};

enum class Coding { kRaw, kWdr, kAswdr };

// Adaptive arithmetic coding. For WDR there are contexts 1 to 3 of three characters and an end
// symbol, and 11 bits a code value; for ASWDR contexts 1 to 3 of three characters and 4 to 7 of
// two, without an end symbol, and 9 bits. A value, which a copy leaves as it is.
class Arithmetic {
 public:
  static constexpr int kEnd = 3;  // the character of the end symbol
  struct Symbol {
    int character;
    int frequency;
  };
  using Context = std::vector<Symbol>;  // the frequent first

  Arithmetic(Coding coding, const Bits& of);

  // To read: throws CodingEnds once as many bits past the end were read as a code value has.
  int Code(int context, int character);
  // Codes the end symbol, where there is one, and sends what tells the interval.
  void Done();
  void EndBehindStream() const;

  Bits bits;
  int codeValueBits;
  int bitsToFollow = 0;

 private:
  [[nodiscard]] std::size_t Find(const Context& context, int character) const;
  void Narrow(const Context& context, std::size_t symbol);
  void Widen();
  void Emit(int bit);
  void Learn(Context& context, std::size_t symbol) const;

  bool hasEnd_;
  int quarter_;
  std::array<Context, 8> contexts_;  // 0 is none
  int lastContext_ = 1;
  int low_ = 0;
  int high_;
  int value_ = 0;
};

class Symbols {
 public:
  Symbols(Coding coding, const Bits& bits) : coding_(coding), coder_(coding, bits) {}

  // 1 or more, as its binary digits without the leading 1, the least significant first, and a mark
  // (6 = 110b has the digits 0, 1). Error kOverflow beyond 32 bits.
  std::int32_t Number(std::int32_t number);
  bool Sign(bool negative);
  bool Refinement(bool moved);
  // What was written.
  Bytes Finish();

  [[nodiscard]] std::int32_t Count() const { return coder_.bits.count; }
  // With the bits that are decided but wait for a carry.
  [[nodiscard]] std::int32_t Spent() const { return Count() + coder_.bitsToFollow; }
  // As many bits past the end were asked for as end the decoding.
  [[nodiscard]] bool PastEnd() const { return coder_.bits.pastEnd >= coder_.codeValueBits; }

 private:
  enum Decision { kDigit, kSign, kRefinement };

  int Bit(bool bit);
  int Digit(int digit);
  int Decide(Decision decision, int character);

  Coding coding_;
  Arithmetic coder_;           // of raw bits, nothing but its bits
  std::array<int, 3> last_{};  // the last character of each decision
};

}  // namespace marovia::plain
