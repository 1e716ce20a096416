#include "codec/coders.h"

#include <algorithm>
#include <array>

#include "context/context_header.h"
#include "format/file_header.h"
#include "passes/adaptive_order.h"

namespace marovia {
namespace {

using enum ScanMethod;
using enum EntropyCoding;

constexpr int kRaw = SetBitTotal();
constexpr int kWdrArithmetic = SetBitTotal_WDR_AC();
constexpr int kAswdrArithmetic = SetBitTotal_ASWDR();
constexpr int kLossless = SetBitTotal_ASWDR() - kBudgetBits;

constexpr std::array kCoders = {
    Coder{.kind = FileKind::kAwb,
          .method = kWdr,
          .version = 1,
          .coding = kBinary,
          .lossless = false,
          .extension = "awb",
          .name = "WDR, raw bits",
          .filter = "WDR binary compression (*.awb)|*.awb",
          .order = OrderKind::kFixed,
          .symbols = SymbolKind::kBits,
          .encoderCharge = kRaw,
          .regionCharge = kRaw,
          .decoderCharge = kRaw},
    Coder{.kind = FileKind::kAwa,
          .method = kWdr,
          .version = 1,
          .coding = kArithmetic,
          .lossless = false,
          .extension = "awa",
          .name = "WDR, arithmetic coding",
          .filter = "WDR arith. compression (*.awa)|*.awa",
          .order = OrderKind::kFixed,
          .symbols = SymbolKind::kWdr,
          .encoderCharge = kWdrArithmetic,
          .regionCharge = kWdrArithmetic,
          .decoderCharge = kRaw},
    Coder{.kind = FileKind::kAwd,
          .method = kAswdr,
          .version = 1,
          .coding = kBinary,
          .lossless = false,
          .extension = "awd",
          .name = "ASWDR, raw bits",
          .filter = "ASWDR_Ver1 binary compression (*.awd)|*.awd",
          .order = OrderKind::kAdaptive,
          .symbols = SymbolKind::kBits,
          .encoderCharge = kRaw,
          .regionCharge = kRaw,
          .decoderCharge = kRaw},
    Coder{.kind = FileKind::kAwf,
          .method = kAswdr,
          .version = 1,
          .coding = kArithmetic,
          .lossless = false,
          .extension = "awf",
          .name = "ASWDR, arithmetic coding",
          .filter = "ASWDR_Ver1 arith. compression (*.awf)|*.awf",
          .order = OrderKind::kAdaptive,
          .symbols = SymbolKind::kAswdr,
          .encoderCharge = kAswdrArithmetic,
          .regionCharge = kWdrArithmetic,
          .decoderCharge = kAswdrArithmetic},
    Coder{.kind = FileKind::kAwg,
          .method = kAswdr,
          .version = 1,
          .coding = kArithmetic,
          .lossless = true,
          .extension = "awg",
          .name = "ASWDR, arithmetic coding, lossless",
          .filter = "ASWDR_V1 lossless arith. compression (*.awg)|*.awg",
          .order = OrderKind::kAdaptive,
          .symbols = SymbolKind::kAswdr,
          .encoderCharge = kLossless,
          .regionCharge = kLossless,
          .decoderCharge = kLossless},
    Coder{.kind = FileKind::kAwc,
          .method = kAswdr,
          .version = 2,
          .coding = kBinary,
          .lossless = false,
          .extension = "awc",
          .name = "ASWDR, second version, raw bits",
          .filter = "ASWDR_Ver2 binary compression (*.awc)|*.awc",
          .order = OrderKind::kRanked,
          .symbols = SymbolKind::kBits,
          .encoderCharge = kRaw,
          .regionCharge = kRaw,
          .decoderCharge = kRaw},
    Coder{.kind = FileKind::kAwh,
          .method = ScanMethod::kContext,
          .version = 1,
          .coding = kArithmetic,
          .lossless = false,
          .extension = "awh",
          .name = "context coding, lossy or lossless",
          .filter = "Context compression (*.awh)|*.awh",
          .order = OrderKind::kContext,
          .symbols = SymbolKind::kContext,
          .encoderCharge = 0,
          .regionCharge = 0,
          .decoderCharge = 0},
};

constexpr auto kKinds = [] {
  std::array<FileKind, kCoders.size()> kinds{};
  std::ranges::transform(kCoders, kinds.begin(), &Coder::kind);
  return kinds;
}();

static_assert(std::ranges::is_sorted(kKinds) && kKinds.back() == FileKind{kKinds.size() - 1},
              "A kind is the place of its row.");

}  // namespace

std::span<const Coder> AllCoders() {
  return kCoders;
}

std::span<const FileKind> AllKinds() {
  return kKinds;
}

const Coder& CoderOf(FileKind kind) {
  return kCoders[static_cast<std::size_t>(kind)];
}

const Coder* FindCoder(ScanMethod method, int version, EntropyCoding coding, bool lossless) {
  for (const Coder& row : kCoders) {
    if (row.method == method && row.version == version && row.coding == coding &&
        row.lossless == lossless)
      return &row;
  }
  return nullptr;
}

std::unique_ptr<VisitingOrder> MakeOrder(OrderKind kind, const BandGrid& grid) {
  if (kind == OrderKind::kFixed) return std::make_unique<FixedOrder>(grid);
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
