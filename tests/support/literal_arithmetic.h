// The adaptive arithmetic coder in its two set-ups, one bit of an interval at a time.
#pragma once

#include <array>
#include <cstdint>

#include "tests/support/literal_bits.h"

namespace marovia::literal {

// What DecodeSymbol gives for the end symbol.
inline constexpr int kEndCharacter = 3;

struct ArithmeticCoder {
  // Three contexts of three characters and an end symbol, 11 bits a code value.
  void InitializeArithmeticCoding();
  // Contexts 1 to 3 of three characters, 4 to 7 of two, without an end symbol, 9 bits.
  void InitializeArithmeticCodingTwo();

  // Characters are coded in `context`, which the caller sets before. The procedures named Two are
  // those of the contexts of two characters.
  void Encode(int character, BitWriter& writer);
  void EncodeTwo(int character, BitWriter& writer);
  // Codes the end symbol, in the set-up that has one, and sends what tells the interval.
  void DoneEncoding(BitWriter& writer);

  void BeginDecoding(BitReader& reader);
  // Throw CodingEnds once as many bits past the end were read as a code value has: nothing of such
  // a value is known, so the character is dropped.
  int DecodeSymbol(BitReader& reader);
  int DecodeSymbolTwo(BitReader& reader);

  int context = 1;
  std::int32_t low = 0;
  std::int32_t high = 0;
  std::int32_t bitsToFollow = 0;
  std::int32_t value = 0;

  int codeValueBits = 0;
  std::int32_t maximumFrequency = 0;
  std::int32_t firstQuarter = 0;
  std::int32_t half = 0;
  std::int32_t thirdQuarter = 0;
  int numberOfSymbols = 0;

  // The second index is the context.
  using Table = std::array<std::array<std::int32_t, 8>, 6>;
  Table freq{};
  Table cum_freq{};  // of the symbols above an index
  Table char_to_index{};
  Table index_to_char{};

 private:
  void SetCodeValueBits(int bits);
  void FillContext(int k, int characters, std::int32_t total);
  void Narrow(int symbol);
  void EncodeIndex(int symbol, BitWriter& writer);
  void Emit(int bit, BitWriter& writer);
  int DecodeIndex(BitReader& reader);
  void DropIfPastEnd(const BitReader& reader) const;
  void Update(int symbol, int halvedFrom);
};

}  // namespace marovia::literal
