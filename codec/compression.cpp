#include "codec/compression.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/checked.h"
#include "coding/arithmetic_symbols.h"
#include "coding/raw_symbols.h"
#include "format/geometry.h"
#include "measures/region.h"
#include "passes/bit_planes.h"
#include "passes/pass_encoder.h"
#include "passes/ranked_encoder.h"
#include "passes/run.h"
#include "wavelet/catalogue.h"
#include "wavelet/transform.h"

namespace marovia {
namespace {

HomeSet HomesIn(const Grid<std::uint8_t>& mask, const Walk& positions) {
  HomeSet homes(positions.size());
  for (std::size_t home = 0; home < positions.size(); ++home) {
    if (mask.Samples()[positions[home]] != 0) homes.Insert(static_cast<Home>(home));
  }
  return homes;
}

}  // namespace

float HeldShare(float share) {
  if (share < 0) return 0.01F;
  return std::min(share, 0.99F);
}

Compression::Compression(const Coder& coder, const Image& image, WaveletKind wavelet, bool pad)
    : coder_(coder), image_(image), pad_(pad) {
  header_.wavelet = wavelet;
  header_.sides = {image.Rows(), image.Cols()};
  if (image.Empty()) Fail(Errc::kInvalidArgument, "The image is empty.");
  CheckSides(header_.sides);
}

void Compression::SetLevels(int levels) {
  header_.levels = levels;
  header_.padded = pad_ && PaddedSides(header_.sides, levels) != header_.sides;
  CheckSides(header_.CodedSides());
}

const Grid<float>& Compression::Transform() {
  const auto [wavelet, levels] = std::pair(header_.wavelet, header_.levels);
  coefficients_ = header_.padded
                      ? TransformTheImage(Padded(image_, levels), wavelet, levels, threads_)
                      : TransformTheImage(image_, wavelet, levels, threads_);
  return coefficients_;
}

void Compression::SubtractMean() {
  header_.mean = SubtractAverage(coefficients_, header_.wavelet, header_.levels);
}

void Compression::ChooseThreshold() {
  header_.exponent = GetThreshold(coefficients_.Samples(), header_.wavelet);
}

Grid<std::uint8_t> Compression::SetRegion(const Region& region, float share) {
  const int widening = 2 * SupportOfWavelet(header_.wavelet);
  const Sides coded = header_.CodedSides();
  mask_ = GetROIValues(coded.rows, coded.cols, region, widening, header_.levels);
  const double budget =
      header_.budget
          ? static_cast<double>(*header_.budget)
          : static_cast<float>(CheckedMul32(CheckedMul32(image_.Rows(), image_.Cols()), 8));
  switchPoint_ = ToInt32((1.0 - double{HeldShare(share)}) * budget);
  region_ = region;
  return mask_;
}

PassReport Compression::WritePasses(const PassListener& onPass) {
  file_ = WriteHeader(header_);
  const Sides coded = header_.CodedSides();
  const BandGrid grid{coded.rows, coded.cols, header_.levels};
  if (coder_.order == OrderKind::kRanked) {
    const RestingOrder order(grid);
    return WriteWith<RankedEncoder, BitSymbolWriter>(order, onPass);
  }
  const auto order = MakeOrder(coder_.order, grid);
  switch (coder_.symbols) {
    case SymbolKind::kBits:
      return WriteWith<PassEncoder, BitSymbolWriter>(*order, onPass);
    case SymbolKind::kWdr:
      return WriteWith<PassEncoder, WdrSymbolWriter>(*order, onPass);
    case SymbolKind::kAswdr:
    case SymbolKind::kContext:
      break;
  }
  return WriteWith<PassEncoder, AswdrSymbolWriter>(*order, onPass);
}

template <template <class> class Encoder, class Symbols, class Order>
PassReport Compression::WriteWith(Order& order, const PassListener& onPass) {
  const BitPlanes planes(order.Gather(coefficients_.Samples(), threads_), header_.exponent,
                         threads_);
  coefficients_ = {};

  EncoderPlan plan{.budget = header_.budget ? *header_.budget : kNoLimit,
                   .testBeforeFirstSymbol = coder_.symbols != SymbolKind::kAswdr};
  std::optional<HomeSet> regionHomes;
  if (region_) {
    regionHomes = HomesIn(mask_, order.Positions());
    plan.region = &*regionHomes;
    plan.switchPoint = switchPoint_;
  }
  const int charge = region_ ? coder_.regionCharge : coder_.encoderCharge;
  Encoder<Symbols> passes(planes, order, Symbols(charge, file_), plan);
  const auto report = [&](const PassState& state) {
    return PassReport{state.pass, state.threshold, static_cast<std::int32_t>(passes.FoundCount()),
                      ToInt32(static_cast<double>(passes.BitsSent()))};
  };
  const PassState last = RunPasses(
      {header_.wavelet, header_.exponent, coder_.lossless},
      [&](int pass, float) { return passes.Run(pass); },
      [&](const PassState& state) {
        if (onPass) onPass(report(state));
      });

  passes.Finish();
  return report(last);
}

}  // namespace marovia
