// The stream of single bits, most significant first in each byte, with its running count.
#pragma once

#include <cstddef>
#include <cstdint>

#include "marovia/image.h"

namespace marovia::literal {

// Thrown where coding or decoding ends in the middle of a pass: the budget is reached, or the
// stream holds nothing more.
struct CodingEnds {};

struct BitWriter {
  Bytes* file = nullptr;
  int freeBits = 8;
  int accumulator = 0;
  std::int32_t sent = 0;  // the header's charge included
};

void TransmitBit(int bit, BitWriter& writer);
void TransmitDbl(int bit, BitWriter& writer);
void WritePartialByte(BitWriter& writer);

struct BitReader {
  ByteView file;
  std::size_t next = 0;  // the byte to read when bitsLeft is 0
  int bitsLeft = 0;
  int current = 0;
  std::int32_t read = 0;  // the header's charge included
  int pastEnd = 0;        // how many of the bits read lie behind the end of the file; they are 0
};

int GetBit(BitReader& reader);

}  // namespace marovia::literal
