#include "tests/support/literal_arithmetic.h"

#include <cstddef>

#include "base/checked.h"

namespace marovia::literal {
namespace {

constexpr int kEndSymbol = 4;
constexpr int kSymbolsWithEnd = 4;

std::int32_t& At(ArithmeticCoder::Table& table, int index, int context) {
  return table[static_cast<std::size_t>(index)][static_cast<std::size_t>(context)];
}

}  // namespace

void ArithmeticCoder::SetCodeValueBits(int bits) {
  const std::int32_t top = (1 << bits) - 1;
  codeValueBits = bits;
  maximumFrequency = (1 << (bits - 2)) - 1;
  firstQuarter = top / 4 + 1;
  half = 2 * firstQuarter;
  thirdQuarter = 3 * firstQuarter;
  low = 0;
  high = top;
  bitsToFollow = 0;
  value = 0;
  context = 1;
}

void ArithmeticCoder::FillContext(int k, int characters, std::int32_t total) {
  for (int c = 0; c < characters; ++c) {
    At(char_to_index, c, k) = c + 1;
    At(index_to_char, c + 1, k) = c;
  }
  for (int i = 0; i <= 4; ++i) {
    At(freq, i, k) = i == 0 ? 0 : 1;
    At(cum_freq, i, k) = total - i;
  }
}

void ArithmeticCoder::InitializeArithmeticCoding() {
  SetCodeValueBits(11);
  numberOfSymbols = 4;
  for (int k = 1; k <= 3; ++k) {
    FillContext(k, 3, 4);
    At(index_to_char, kEndSymbol, k) = kEndCharacter;
  }
}

void ArithmeticCoder::InitializeArithmeticCodingTwo() {
  SetCodeValueBits(9);
  numberOfSymbols = 3;
  for (int k = 1; k <= 3; ++k) FillContext(k, 3, 3);
  for (int k = 4; k <= 7; ++k) FillContext(k, 2, 2);
}

void ArithmeticCoder::Encode(int character, BitWriter& writer) {
  const int symbol = At(char_to_index, character, context);
  EncodeIndex(symbol, writer);
  Update(symbol, numberOfSymbols);
}

void ArithmeticCoder::EncodeTwo(int character, BitWriter& writer) {
  const int symbol = At(char_to_index, character, context);
  EncodeIndex(symbol, writer);
  Update(symbol, numberOfSymbols - 1);
}

void ArithmeticCoder::DoneEncoding(BitWriter& writer) {
  if (numberOfSymbols == kSymbolsWithEnd) {
    EncodeIndex(kEndSymbol, writer);
    Update(kEndSymbol, numberOfSymbols);
  }
  ++bitsToFollow;
  Emit(low < firstQuarter ? 0 : 1, writer);
}

void ArithmeticCoder::Narrow(int symbol) {
  const std::int32_t range = high - low + 1;
  const std::int32_t total = At(cum_freq, 0, context);
  high = low + CheckedMul32(range, At(cum_freq, symbol - 1, context)) / total - 1;
  low = low + CheckedMul32(range, At(cum_freq, symbol, context)) / total;
}

void ArithmeticCoder::EncodeIndex(int symbol, BitWriter& writer) {
  Narrow(symbol);
  for (;;) {
    if (high < half) {
      Emit(0, writer);
    } else if (low >= half) {
      Emit(1, writer);
      low -= half;
      high -= half;
    } else if (low >= firstQuarter && high < thirdQuarter) {
      ++bitsToFollow;
      low -= firstQuarter;
      high -= firstQuarter;
    } else {
      return;
    }
    low = 2 * low;
    high = 2 * high + 1;
  }
}

void ArithmeticCoder::Emit(int bit, BitWriter& writer) {
  TransmitBit(bit, writer);
  for (; bitsToFollow > 0; --bitsToFollow) TransmitBit(1 - bit, writer);
}

void ArithmeticCoder::BeginDecoding(BitReader& reader) {
  value = 0;
  for (int i = 0; i < codeValueBits; ++i) value = 2 * value + GetBit(reader);
  low = 0;
  high = (1 << codeValueBits) - 1;
}

int ArithmeticCoder::DecodeSymbol(BitReader& reader) {
  const int symbol = DecodeIndex(reader);
  const int character = At(index_to_char, symbol, context);
  if (symbol != kEndSymbol) Update(symbol, numberOfSymbols);
  return character;
}

int ArithmeticCoder::DecodeSymbolTwo(BitReader& reader) {
  const int symbol = DecodeIndex(reader);
  const int character = At(index_to_char, symbol, context);
  if (symbol != kEndSymbol) Update(symbol, numberOfSymbols - 1);
  return character;
}

void ArithmeticCoder::DropIfPastEnd(const BitReader& reader) const {
  if (reader.pastEnd >= codeValueBits) throw CodingEnds{};
}

int ArithmeticCoder::DecodeIndex(BitReader& reader) {
  DropIfPastEnd(reader);
  const std::int32_t range = high - low + 1;
  const std::int32_t target = (CheckedMul32(value - low + 1, At(cum_freq, 0, context)) - 1) / range;
  int symbol = 1;
  while (At(cum_freq, symbol, context) > target) ++symbol;
  Narrow(symbol);
  for (;;) {
    std::int32_t less = 0;
    if (high < half) {
      less = 0;
    } else if (low >= half) {
      less = half;
    } else if (low >= firstQuarter && high < thirdQuarter) {
      less = firstQuarter;
    } else {
      return symbol;
    }
    low = 2 * (low - less);
    high = 2 * (high - less) + 1;
    value = 2 * (value - less) + GetBit(reader);
    DropIfPastEnd(reader);
  }
}

void ArithmeticCoder::Update(int symbol, int halvedFrom) {
  if (At(cum_freq, 0, context) == maximumFrequency) {
    std::int32_t sum = 0;
    for (int i = halvedFrom; i >= 0; --i) {
      At(freq, i, context) = (At(freq, i, context) + 1) / 2;
      At(cum_freq, i, context) = sum;
      sum += At(freq, i, context);
    }
  }
  int i = symbol;
  while (At(freq, i, context) == At(freq, i - 1, context)) --i;
  if (i < symbol) {
    const std::int32_t above = At(index_to_char, i, context);
    const std::int32_t coded = At(index_to_char, symbol, context);
    At(index_to_char, i, context) = coded;
    At(index_to_char, symbol, context) = above;
    At(char_to_index, above, context) = symbol;
    At(char_to_index, coded, context) = i;
  }
  ++At(freq, i, context);
  for (int j = i - 1; j >= 0; --j) ++At(cum_freq, j, context);
}

}  // namespace marovia::literal
