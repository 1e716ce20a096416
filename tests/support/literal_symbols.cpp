#include "tests/support/literal_symbols.h"

#include "base/checked.h"
#include "tests/support/literal_arithmetic.h"

namespace marovia::literal {
namespace {

constexpr int kMark = 2;

class BinaryWriter final : public SymbolWriter {
 public:
  using SymbolWriter::SymbolWriter;

  void Number(std::int32_t number) override {
    for (; number >= 2; number /= 2) TransmitDbl(number % 2, writer_);
    TransmitBit(1, writer_);
  }
  void Sign(bool negative) override { TransmitBit(negative ? 1 : 0, writer_); }
  void Refinement(bool moved) override { TransmitBit(moved ? 1 : 0, writer_); }
  void Finish() override {
    WritePartialByte(writer_);
    writer_.file->push_back(128);
  }
};

class WdrWriter final : public SymbolWriter {
 public:
  WdrWriter(Bytes& file, std::int32_t charge) : SymbolWriter(file, charge) {
    coder_.InitializeArithmeticCoding();
  }

  void Number(std::int32_t number) override {
    for (; number >= 2; number /= 2) Encode(1, number % 2);
    Encode(1, kMark);
  }
  void Sign(bool negative) override { Encode(2, negative ? 1 : 0); }
  void Refinement(bool moved) override { Encode(3, moved ? 0 : 1); }
  void Finish() override {
    coder_.DoneEncoding(writer_);
    WritePartialByte(writer_);
  }
  [[nodiscard]] std::int32_t BitsSpent() const override {
    return CheckedAdd32(writer_.sent, coder_.bitsToFollow);
  }

 private:
  void Encode(int context, int character) {
    coder_.context = context;
    coder_.Encode(character, writer_);
  }

  ArithmeticCoder coder_;
};

// The contexts of the next digit or mark, sign and refinement; each follows from the symbol of its
// kind before it.
struct ChainedContexts {
  int index = 1;
  int sign = 4;
  int refinement = 6;
};

class AswdrWriter final : public SymbolWriter {
 public:
  AswdrWriter(Bytes& file, std::int32_t charge) : SymbolWriter(file, charge) {
    coder_.InitializeArithmeticCodingTwo();
  }

  void Number(std::int32_t number) override {
    for (; number >= 2; number /= 2) EncodeIndex(number % 2);
    EncodeIndex(kMark);
  }
  void Sign(bool negative) override {
    coder_.context = contexts_.sign;
    coder_.EncodeTwo(negative ? 1 : 0, writer_);
    contexts_.sign = negative ? 5 : 4;
  }
  void Refinement(bool moved) override {
    coder_.context = contexts_.refinement;
    coder_.EncodeTwo(moved ? 0 : 1, writer_);
    contexts_.refinement = moved ? 6 : 7;
  }
  void Finish() override {
    coder_.context = contexts_.index;
    coder_.DoneEncoding(writer_);
    WritePartialByte(writer_);
  }
  [[nodiscard]] std::int32_t BitsSpent() const override {
    return CheckedAdd32(writer_.sent, coder_.bitsToFollow);
  }

 private:
  void EncodeIndex(int character) {
    coder_.context = contexts_.index;
    coder_.Encode(character, writer_);
    contexts_.index = 1 + character;
  }

  ArithmeticCoder coder_;
  ChainedContexts contexts_;
};

class BinaryReader final : public SymbolReader {
 public:
  using SymbolReader::SymbolReader;

  bool Sign() override { return Bit() == 1; }
  bool Refinement() override { return Bit() == 1; }
  [[nodiscard]] bool PastEnd() const override { return reader_.pastEnd > 0; }

 private:
  int Digit() override { return Bit() == 1 ? kMark : Bit(); }

  int Bit() {
    const int bit = GetBit(reader_);
    if (PastEnd()) throw CodingEnds{};
    return bit;
  }
};

class ArithmeticReader : public SymbolReader {
 public:
  using SymbolReader::SymbolReader;

  [[nodiscard]] bool PastEnd() const override { return reader_.pastEnd >= coder_.codeValueBits; }

 protected:
  ArithmeticCoder coder_;
};

class WdrReader final : public ArithmeticReader {
 public:
  WdrReader(ByteView file, std::size_t start, std::int32_t charge)
      : ArithmeticReader(file, start, charge) {
    coder_.InitializeArithmeticCoding();
    coder_.BeginDecoding(reader_);
  }

  bool Sign() override { return Decode(2) == 1; }
  bool Refinement() override { return Decode(3) == 0; }

 private:
  int Digit() override { return Decode(1); }

  int Decode(int context) {
    coder_.context = context;
    const int character = coder_.DecodeSymbol(reader_);
    if (character == kEndCharacter) throw CodingEnds{};
    return character;
  }
};

class AswdrReader final : public ArithmeticReader {
 public:
  AswdrReader(ByteView file, std::size_t start, std::int32_t charge)
      : ArithmeticReader(file, start, charge) {
    coder_.InitializeArithmeticCodingTwo();
    coder_.BeginDecoding(reader_);
  }

  bool Sign() override {
    coder_.context = contexts_.sign;
    const bool negative = coder_.DecodeSymbolTwo(reader_) == 1;
    contexts_.sign = negative ? 5 : 4;
    return negative;
  }
  bool Refinement() override {
    coder_.context = contexts_.refinement;
    const bool moved = coder_.DecodeSymbolTwo(reader_) == 0;
    contexts_.refinement = moved ? 6 : 7;
    return moved;
  }

 private:
  int Digit() override {
    coder_.context = contexts_.index;
    const int character = coder_.DecodeSymbol(reader_);
    contexts_.index = 1 + character;
    return character;
  }

  ChainedContexts contexts_;
};

}  // namespace

std::int32_t SymbolReader::Number() {
  std::int32_t value = 0;
  std::int32_t weight = 1;
  for (int digit = Digit(); digit != kMark; digit = Digit()) {
    if (digit == 1) value = CheckedAdd32(value, weight);
    weight = CheckedMul32(weight, 2);
  }
  return CheckedAdd32(weight, value);
}

std::unique_ptr<SymbolWriter> MakeSymbolWriter(FileKind kind, Bytes& file, std::int32_t charge) {
  if (kind == FileKind::kAwb || kind == FileKind::kAwd || kind == FileKind::kAwc) {
    return std::make_unique<BinaryWriter>(file, charge);
  }
  if (kind == FileKind::kAwa) return std::make_unique<WdrWriter>(file, charge);
  return std::make_unique<AswdrWriter>(file, charge);
}

std::unique_ptr<SymbolReader> MakeSymbolReader(FileKind kind, ByteView file, std::size_t start,
                                               std::int32_t charge) {
  if (kind == FileKind::kAwb || kind == FileKind::kAwd || kind == FileKind::kAwc) {
    return std::make_unique<BinaryReader>(file, start, charge);
  }
  if (kind == FileKind::kAwa) return std::make_unique<WdrReader>(file, start, charge);
  return std::make_unique<AswdrReader>(file, start, charge);
}

}  // namespace marovia::literal
