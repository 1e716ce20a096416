// The table of the coders: all that the codec and its fronts have to know of each.
//
// A coder more is a kind in marovia/types.h (and in the C header), a row here, and what is new of
// it: its order of visiting, its symbols.
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "marovia/types.h"

#include "passes/visiting_order.h"

namespace marovia {

enum class ScanMethod { kWdr, kAswdr, kContext };
enum class EntropyCoding { kBinary, kArithmetic };
// kContext: none of those that Compression and Decompression run through.
enum class OrderKind { kFixed, kAdaptive, kRanked, kContext };
enum class SymbolKind { kBits, kWdr, kAswdr, kContext };

struct Coder {
  FileKind kind;
  ScanMethod method;
  int version;  // of the method, from 1
  EntropyCoding coding;
  bool lossless;  // no budget, in the header or anywhere
  std::string_view extension;
  std::string_view name;    // as a front names it to a user: "ASWDR, raw bits"
  std::string_view filter;  // what a file dialog lists it as: "text|pattern"
  OrderKind order;
  SymbolKind symbols;
  // Bits charged for the header before the first of the stream; a region's compressor may charge
  // more than a plain one, and a decompressor less.
  int encoderCharge;
  int regionCharge;
  int decoderCharge;

  [[nodiscard]] bool HasBudget() const { return !lossless; }
  [[nodiscard]] bool IsArithmetic() const { return coding == EntropyCoding::kArithmetic; }
};

// In the order of their kinds' numbers.
std::span<const Coder> AllCoders();
const Coder& CoderOf(FileKind kind);

// The one of that method, version and coding; null where there is none.
const Coder* FindCoder(ScanMethod method, int version, EntropyCoding coding, bool lossless);

// Not for kRanked and kContext, whose passes have orders of their own.
std::unique_ptr<VisitingOrder> MakeOrder(OrderKind kind, const BandGrid& grid);

}  // namespace marovia
