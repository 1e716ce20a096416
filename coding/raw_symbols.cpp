#include "coding/raw_symbols.h"

#include "marovia/error.h"

namespace marovia {

void FailOnLongNumber() {
  Fail(Errc::kMalformed, "The stream is damaged: a run in it exceeds 31 bits.");
}

void BitSymbolWriter::Finish() {
  writer_.Finish();
  writer_.AppendByte(kEndByte);
}

BitSymbolReader::LongNumber BitSymbolReader::ReadLongNumber(BitReader reader) {
  std::uint32_t value = 0;
  int digits = 0;
  while (reader.GetBit() == 0) {
    const unsigned digit = reader.GetBit();
    if (reader.PastEnd()) break;
    if (digits == kMostDigits) FailOnLongNumber();
    value |= digit << digits++;
  }
  return {reader, value + (1U << digits)};
}

}  // namespace marovia
