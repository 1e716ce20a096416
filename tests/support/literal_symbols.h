// How the decisions of the passes become bits: as they are, or through the arithmetic coder with
// fixed contexts (WDR) or chained ones (ASWDR).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "marovia/codec.h"

#include "tests/support/literal_bits.h"

namespace marovia::literal {

class SymbolWriter {
 public:
  SymbolWriter(Bytes& file, std::int32_t charge) {
    writer_.file = &file;
    writer_.sent = charge;
  }
  SymbolWriter(const SymbolWriter&) = delete;
  SymbolWriter& operator=(const SymbolWriter&) = delete;
  virtual ~SymbolWriter() = default;

  // A run or an end-of-pass value, 1 or more, with the mark that ends it: its binary digits without
  // the leading 1, the least significant first (6 = 110b has the digits 0, 1).
  virtual void Number(std::int32_t number) = 0;
  virtual void Sign(bool negative) = 0;
  virtual void Refinement(bool moved) = 0;
  virtual void Finish() = 0;

  [[nodiscard]] std::int32_t BitsSent() const { return writer_.sent; }
  // With the bits that are decided but wait for a carry.
  [[nodiscard]] virtual std::int32_t BitsSpent() const { return writer_.sent; }

 protected:
  BitWriter writer_;
};

// Every function throws CodingEnds where the stream holds nothing more.
class SymbolReader {
 public:
  SymbolReader(ByteView file, std::size_t start, std::int32_t charge) {
    reader_.file = file;
    reader_.next = start;
    reader_.read = charge;
  }
  SymbolReader(const SymbolReader&) = delete;
  SymbolReader& operator=(const SymbolReader&) = delete;
  virtual ~SymbolReader() = default;

  std::int32_t Number();
  virtual bool Sign() = 0;
  virtual bool Refinement() = 0;

  [[nodiscard]] std::int32_t BitsRead() const { return reader_.read; }
  // As many bits past the end of the file were asked for as end the decoding.
  [[nodiscard]] virtual bool PastEnd() const = 0;

 protected:
  // A digit, or 2 for the mark that ends the number.
  virtual int Digit() = 0;

  BitReader reader_;
};

std::unique_ptr<SymbolWriter> MakeSymbolWriter(FileKind kind, Bytes& file, std::int32_t charge);
std::unique_ptr<SymbolReader> MakeSymbolReader(FileKind kind, ByteView file, std::size_t start,
                                               std::int32_t charge);

}  // namespace marovia::literal
