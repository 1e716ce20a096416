#include "tests/support/literal_bits.h"

#include "base/checked.h"
#include "base/shift.h"

namespace marovia::literal {

void TransmitBit(int bit, BitWriter& writer) {
  --writer.freeBits;
  if (bit == 1) writer.accumulator += PowerOfTwo(writer.freeBits);
  if (writer.freeBits == 0) WritePartialByte(writer);
  writer.sent = CheckedAdd32(writer.sent, 1);
}

void TransmitDbl(int bit, BitWriter& writer) {
  TransmitBit(0, writer);
  TransmitBit(bit, writer);
}

void WritePartialByte(BitWriter& writer) {
  if (writer.freeBits == 8) return;
  writer.file->push_back(static_cast<std::uint8_t>(writer.accumulator));
  writer.freeBits = 8;
  writer.accumulator = 0;
}

int GetBit(BitReader& reader) {
  reader.read = CheckedAdd32(reader.read, 1);
  if (reader.bitsLeft == 0 && reader.next == reader.file.size()) {
    ++reader.pastEnd;
    return 0;
  }
  if (reader.bitsLeft == 0) {
    reader.bitsLeft = 8;
    reader.current = reader.file[reader.next++];
  }
  --reader.bitsLeft;
  if (reader.current < PowerOfTwo(reader.bitsLeft)) return 0;
  reader.current -= PowerOfTwo(reader.bitsLeft);
  return 1;
}

}  // namespace marovia::literal
