#include "codec/decompression.h"

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <utility>

#include "base/checked.h"
#include "coding/arithmetic_symbols.h"
#include "coding/raw_symbols.h"
#include "format/file_header.h"
#include "format/geometry.h"
#include "passes/pass_decoder.h"
#include "passes/ranked_decoder.h"
#include "passes/run.h"
#include "wavelet/catalogue.h"
#include "wavelet/transform.h"

namespace marovia {
namespace {

// Nothing of a file that is shorter than its header.
ByteView StreamOf(ByteView file, FileKind kind) {
  return file.subspan(std::min(file.size(), HeaderSize(CoderOf(kind).HasBudget())));
}

Grid<float> LowBandOf(const Grid<float>& level) {
  Grid<float> low(level.Rows() / 2, level.Cols() / 2, Unfilled{});
  for (int r = 0; r < low.Rows(); ++r) {
    std::copy_n(level.Row(r).begin(), low.Cols(), low.Row(r).begin());
  }
  return low;
}

}  // namespace

Decompression::Decompression(ByteView file, FileKind kind, std::int64_t maxPixels)
    : Decompression(CheckedHeader(file, CoderOf(kind).HasBudget(), maxPixels), kind,
                    StreamOf(file, kind)) {}

Decompression::Decompression(const FileHeader& header, FileKind kind, ByteView stream)
    : coder_(CoderOf(kind)),
      info_(InfoOf(header, kind, static_cast<std::int64_t>(stream.size()))),
      stream_(stream),
      budget_(header.budget ? *header.budget : kNoLimit) {}

bool Decompression::HoldBudget(std::int32_t bits) {
  const BudgetChoice choice = SetBitBudget(*info_.budget, bits);
  budget_ = choice.bits;
  return choice.held;
}

void Decompression::Reduce(int levels) {
  reduce_ = std::min(levels, info_.levels);
}

// One level stays where all are left out: the low band has no order of its own.
BandGrid Decompression::KeptGrid() const {
  if (reduce_ == 0) return {info_.codedRows, info_.codedCols, info_.levels};
  const int levels = std::max(1, info_.levels - reduce_);
  return {info_.codedRows >> info_.levels << levels, info_.codedCols >> info_.levels << levels,
          levels};
}

PassReport Decompression::ReadPasses(const PassListener& onPass) {
  const BandGrid grid{info_.codedRows, info_.codedCols, info_.levels};
  if (coder_.order == OrderKind::kRanked) {
    const RestingOrder order(grid);
    return ReadWith<RankedDecoder, BitSymbolReader>(order, RestingOrder(KeptGrid()), onPass);
  }
  const auto order = MakeOrder(coder_.order, grid);
  const auto smaller = reduce_ > 0 ? MakeOrder(coder_.order, KeptGrid()) : nullptr;
  const VisitingOrder& kept = smaller ? *smaller : *order;
  switch (coder_.symbols) {
    case SymbolKind::kBits:
      return ReadWith<PassDecoder, BitSymbolReader>(*order, kept, onPass);
    case SymbolKind::kWdr:
      return ReadWith<PassDecoder, WdrSymbolReader>(*order, kept, onPass);
    case SymbolKind::kAswdr:
    case SymbolKind::kContext:
      break;
  }
  return ReadWith<PassDecoder, AswdrSymbolReader>(*order, kept, onPass);
}

template <template <class> class Decoder, class Symbols, class Order>
PassReport Decompression::ReadWith(Order& order, const std::type_identity_t<Order>& keptOrder,
                                   const PassListener& onPass) {
  const BandGrid kept = KeptGrid();
  Decoder<Symbols> passes(order, kept.Size(), Symbols(coder_.decoderCharge, stream_), budget_);
  const auto report = [&](const PassState& state) {
    return PassReport{state.pass, state.threshold, static_cast<std::int32_t>(passes.FoundCount()),
                      ToInt32(static_cast<double>(passes.BitsRead()))};
  };
  bool finished = true;
  const PassState last = RunPasses(
      {info_.wavelet, info_.exponent, coder_.lossless},
      [&](int pass, float threshold) { return finished = passes.Run(pass, threshold); },
      [&](const PassState& state) {
        if (onPass) onPass(report(state));
      });

  budgetSpent_ = !finished && !passes.StreamEnded();
  truncated_ = passes.StreamEnded() && !(coder_.IsArithmetic() && info_.fillsBudget);
  streamBitsRead_ = passes.BitsRead() - coder_.decoderCharge;
  const bool open = coder_.lossless ? passes.StreamEnded()
                                    : !LoopTest(info_.wavelet, last.pass, last.threshold) ||
                                          info_.wavelet == WaveletKind::kDaub97;
  if (open) passes.PlaceInTheMiddle();

  coefficients_ = Grid<float>(kept.rows, kept.cols, Unfilled{});
  passes.Scatter(keptOrder, coefficients_.Samples(), threads_);
  return report(last);
}

Image Decompression::Invert() {
  const int levels = info_.levels - reduce_;
  AddAverage(coefficients_, KeptGrid().levels, info_.mean);
  if (levels < KeptGrid().levels) coefficients_ = LowBandOf(coefficients_);
  // Every level doubles the low band of the weighted wavelet, and the scale of the others.
  if (reduce_ > 0) {
    const float factor = std::ldexp(1.0F, -reduce_);
    for (float& coefficient : coefficients_.Samples()) coefficient *= factor;
  }
  Image image = InvertTheTransformQuant(coefficients_, info_.wavelet, levels, threads_);
  coefficients_ = {};
  const Sides sides{std::min(image.Rows(), ReducedSide(info_.rows, reduce_)),
                    std::min(image.Cols(), ReducedSide(info_.cols, reduce_))};
  return sides == Sides{image.Rows(), image.Cols()} ? std::move(image) : Cropped(image, sides);
}

}  // namespace marovia
