#include "codec/decompression.h"

#include <algorithm>
#include <string>

#include "aswdr/aswdr_symbols.h"
#include "base/checked.h"
#include "codec/run.h"
#include "coding/pass_decoder.h"
#include "coding/pass_plan.h"
#include "coding/wdr_symbols.h"
#include "wavelet/catalogue.h"
#include "wavelet/scaling.h"
#include "wavelet/transform.h"

namespace marovia {
namespace {

void CheckSizes(const FileHeader& header, std::int64_t maxPixels) {
  const std::string sides = std::to_string(header.rows) + " x " + std::to_string(header.cols);
  const std::int64_t pixels = std::int64_t{header.rows} * header.cols;
  if (pixels > maxPixels) {
    Fail(Errc::kLimit, "The image has " + sides + " = " + std::to_string(pixels) +
                           " pixels; the limit is " + std::to_string(maxPixels) + ".");
  }
  if (header.levels > LevelLimit(header.rows, header.cols, header.wavelet)) {
    Fail(Errc::kMalformed, "Not a file of ours: an image of " + sides + " cannot have " +
                               std::to_string(header.levels) + " levels.");
  }
}

FileInfo MakeInfo(FileKind kind, const FileHeader& header) {
  FileInfo info;
  info.kind = kind;
  info.wavelet = header.wavelet;
  info.levels = header.levels;
  info.rows = info.codedRows = header.rows;
  info.cols = info.codedCols = header.cols;
  info.mean = header.mean;
  info.exponent = header.exponent;
  info.budget = header.budget;
  return info;
}

}  // namespace

Decompression::Decompression(ByteView file, FileKind kind, std::int64_t maxPixels)
    : coder_(CoderOf(kind)) {
  const FileHeader header = ReadHeader(file, coder_.HasBudget());
  CheckSizes(header, maxPixels);
  info_ = MakeInfo(kind, header);
  stream_ = file.subspan(HeaderSize(coder_.HasBudget()));
  if (const auto sides = FindSizeNote(stream_, {header.rows, header.cols}, header.levels)) {
    info_.rows = sides->rows;
    info_.cols = sides->cols;
    stream_ = stream_.first(stream_.size() - kSizeNoteBytes);
  }
  info_.bitsPresent = 8 * static_cast<std::int64_t>(stream_.size());
  info_.fillsBudget = LengthSaysComplete();
  budget_ = header.budget ? *header.budget : kNoLimit;
}

bool Decompression::SetRate(double rate) {
  const BudgetChoice choice = SetBitBudget(*info_.budget, rate, info_.rows, info_.cols);
  budget_ = choice.bits;
  return choice.held;
}

bool Decompression::HoldBudget(std::int32_t bits) {
  budget_ = std::min(*info_.budget, bits);
  return *info_.budget < bits;
}

PassReport Decompression::ReadPasses(const PassListener& onPass) {
  switch (coder_.symbols) {
    case SymbolKind::kBits:
      return ReadWith<BitSymbolReader>(onPass);
    case SymbolKind::kWdr:
      return ReadWith<WdrSymbolReader>(onPass);
    case SymbolKind::kAswdr:
      break;
  }
  return ReadWith<AswdrSymbolReader>(onPass);
}

template <class Symbols>
PassReport Decompression::ReadWith(const PassListener& onPass) {
  const auto order = MakeOrder(coder_.scan, {info_.codedRows, info_.codedCols, info_.levels});
  PassDecoder<Symbols> passes(*order, Symbols(coder_.decoderCharge, stream_), budget_);
  const auto report = [&](const PassState& state) {
    return PassReport{state.pass, state.threshold, static_cast<std::int32_t>(passes.FoundCount()),
                      ToInt32(static_cast<double>(passes.BitsRead()))};
  };
  bool finished = true;
  const PassState last = RunPasses(
      coder_, info_.wavelet, info_.exponent,
      [&](int pass, float threshold) { return finished = passes.Run(pass, threshold); },
      [&](const PassState& state) {
        if (onPass) onPass(report(state));
      });

  budgetSpent_ = !finished && !passes.StreamEnded();
  truncated_ = passes.StreamEnded() && !(coder_.IsArithmetic() && LengthSaysComplete());
  streamBitsRead_ = passes.BitsRead() - coder_.decoderCharge;
  const bool open = coder_.lossless ? passes.StreamEnded()
                                    : !LoopTest(info_.wavelet, last.pass, last.threshold) ||
                                          info_.wavelet == WaveletKind::kDaub97;
  if (open) passes.PlaceInTheMiddle();

  coefficients_ = Grid<float>(info_.codedRows, info_.codedCols, Unfilled{});
  order->Scatter(passes.Values(), coefficients_.Samples());
  return report(last);
}

// The compressor that charged its header most left the fewest bits for the stream.
bool Decompression::LengthSaysComplete() const {
  if (!coder_.HasBudget()) return false;
  const int charge = std::max(coder_.encoderCharge, coder_.regionCharge);
  return info_.bitsPresent >= std::int64_t{*info_.budget} - charge;
}

Image Decompression::Invert() {
  AddAverage(coefficients_, info_.levels, info_.mean);
  Image image = InvertTheTransformQuant(coefficients_, info_.wavelet, info_.levels);
  coefficients_ = {};
  const Sides sides{info_.rows, info_.cols};
  return sides == Sides{image.Rows(), image.Cols()} ? std::move(image) : Cropped(image, sides);
}

}  // namespace marovia
