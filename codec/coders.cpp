#include "codec/coders.h"

#include <array>

#include "aswdr/adaptive_order.h"
#include "coding/file_header.h"
#include "context/context_header.h"

namespace marovia {
namespace {

using enum ScanKind;

constexpr int kRaw = SetBitTotal();
constexpr int kWdrArithmetic = SetBitTotal_WDR_AC();
constexpr int kAswdrArithmetic = SetBitTotal_ASWDR();
constexpr int kLossless = SetBitTotal_ASWDR() - kBudgetBits;

constexpr std::array kCoders = {
    Coder{FileKind::kAwb, "awb", kFixed, SymbolKind::kBits, kRaw, kRaw, kRaw, false},
    Coder{FileKind::kAwa, "awa", kFixed, SymbolKind::kWdr, kWdrArithmetic, kWdrArithmetic, kRaw,
          false},
    Coder{FileKind::kAwd, "awd", kAdaptive, SymbolKind::kBits, kRaw, kRaw, kRaw, false},
    Coder{FileKind::kAwf, "awf", kAdaptive, SymbolKind::kAswdr, kAswdrArithmetic, kWdrArithmetic,
          kAswdrArithmetic, false},
    Coder{FileKind::kAwg, "awg", kAdaptive, SymbolKind::kAswdr, kLossless, kLossless, kLossless,
          true},
    Coder{FileKind::kAwc, "awc", kRanked, SymbolKind::kBits, kRaw, kRaw, kRaw, false},
    Coder{FileKind::kAwh, "awh", kContext, SymbolKind::kContext, 0, 0, 0, false},
};

}  // namespace

const Coder& CoderOf(FileKind kind) {
  return kCoders[static_cast<std::size_t>(kind)];
}

std::unique_ptr<VisitingOrder> MakeOrder(ScanKind scan, const BandGrid& grid) {
  if (scan == kFixed) return std::make_unique<FixedOrder>(grid);
  return std::make_unique<AdaptiveOrder>(grid);
}

std::string_view Extension(FileKind kind) {
  return CoderOf(kind).extension;
}

std::optional<FileKind> KindOfContent(ByteView start) {
  return BeginsContextFile(start) ? std::optional(FileKind::kAwh) : std::nullopt;
}

std::optional<FileKind> KindOfExtension(std::string_view extension) {
  for (const Coder& coder : kCoders) {
    if (coder.extension == extension) return coder.kind;
  }
  return std::nullopt;
}

}  // namespace marovia
