#include "coding/wdr_symbols.h"

#include "marovia/error.h"

namespace marovia {

void FailOnLongNumber() {
  Fail(Errc::kMalformed, "The stream is damaged: a run in it exceeds 31 bits.");
}

Bytes BitSymbolWriter::Finish() {
  constexpr std::uint8_t kEndByte = 128;
  Bytes bytes = writer_.Finish();
  bytes.push_back(kEndByte);
  return bytes;
}

void BitSymbolReader::ReadLongNumber(std::uint32_t& number) {
  std::uint32_t value = 0;
  int digits = 0;
  while (reader_.GetBit() == 0) {
    const unsigned digit = reader_.GetBit();
    if (reader_.PastEnd()) return;
    if (digits == kMostDigits) FailOnLongNumber();
    value |= digit << digits++;
  }
  number = value + (1U << digits);
}

Bytes WdrSymbolWriter::Finish() {
  coder_.EncodeIndex(contexts_[last_], Context::kEndIndex);
  return coder_.DoneEncoding();
}

}  // namespace marovia
