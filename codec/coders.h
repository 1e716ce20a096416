// What a run has to know of each coder. One more is a row here and at most one pair of symbol
// classes, but the public headers and the fronts name the kinds as well.
#pragma once

#include <memory>

#include "marovia/codec.h"

#include "coding/visiting_order.h"

namespace marovia {

// kContext: none of those that Compression and Decompression run through.
enum class ScanKind { kFixed, kAdaptive, kRanked, kContext };
enum class SymbolKind { kBits, kWdr, kAswdr, kContext };

struct Coder {
  FileKind kind;
  std::string_view extension;
  ScanKind scan;
  SymbolKind symbols;
  // Bits charged for the header before the first of the stream; a region's compressor may charge
  // more than a plain one, and a decompressor less.
  int encoderCharge;
  int regionCharge;
  int decoderCharge;
  bool lossless;  // no budget, in the header or anywhere

  [[nodiscard]] bool HasBudget() const { return !lossless; }
  [[nodiscard]] bool IsArithmetic() const { return symbols != SymbolKind::kBits; }
};

const Coder& CoderOf(FileKind kind);

// Not for kRanked and kContext, whose passes have orders of their own.
std::unique_ptr<VisitingOrder> MakeOrder(ScanKind scan, const BandGrid& grid);

}  // namespace marovia
