#include "codec/decompression.h"

#include <algorithm>
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

PassReport Decompression::ReadPasses(const PassListener& onPass) {
  const BandGrid grid{info_.codedRows, info_.codedCols, info_.levels};
  if (coder_.order == OrderKind::kRanked) {
    const RestingOrder order(grid);
    return ReadWith<RankedDecoder, BitSymbolReader>(order, onPass);
  }
  const auto order = MakeOrder(coder_.order, grid);
  switch (coder_.symbols) {
    case SymbolKind::kBits:
      return ReadWith<PassDecoder, BitSymbolReader>(*order, onPass);
    case SymbolKind::kWdr:
      return ReadWith<PassDecoder, WdrSymbolReader>(*order, onPass);
    case SymbolKind::kAswdr:
    case SymbolKind::kContext:
      break;
  }
  return ReadWith<PassDecoder, AswdrSymbolReader>(*order, onPass);
}

template <template <class> class Decoder, class Symbols, class Order>
PassReport Decompression::ReadWith(Order& order, const PassListener& onPass) {
  Decoder<Symbols> passes(order, Symbols(coder_.decoderCharge, stream_), budget_);
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

  coefficients_ = Grid<float>(info_.codedRows, info_.codedCols, Unfilled{});
  passes.Scatter(coefficients_.Samples());
  return report(last);
}

Image Decompression::Invert() {
  AddAverage(coefficients_, info_.levels, info_.mean);
  Image image = InvertTheTransformQuant(coefficients_, info_.wavelet, info_.levels);
  coefficients_ = {};
  const Sides sides{info_.rows, info_.cols};
  return sides == Sides{image.Rows(), image.Cols()} ? std::move(image) : Cropped(image, sides);
}

}  // namespace marovia
