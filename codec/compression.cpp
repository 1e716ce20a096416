#include "codec/compression.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "aswdr/aswdr_symbols.h"
#include "base/checked.h"
#include "base/shift.h"
#include "codec/run.h"
#include "coding/bit_planes.h"
#include "coding/file_header.h"
#include "coding/pass_encoder.h"
#include "coding/wdr_symbols.h"
#include "measures/region.h"
#include "ranked/ranked_encoder.h"
#include "wavelet/catalogue.h"
#include "wavelet/scaling.h"
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
    : coder_(coder), image_(image), wavelet_(wavelet), pad_(pad) {
  if (image.Empty()) Fail(Errc::kInvalidArgument, "The image is empty.");
  CheckSides({image.Rows(), image.Cols()});
}

void Compression::WriteBudget(double rate) {
  WriteBudgetBits(BitBudget(rate, image_.Rows(), image_.Cols()));
}

void Compression::WriteBudgetBits(std::int32_t bits) {
  budget_ = bits;
  AppendBudget(file_, bits);
}

void Compression::WriteLevels(int levels) {
  levels_ = levels;
  coded_ = {image_.Rows(), image_.Cols()};
  if (pad_) coded_ = PaddedSides(coded_, levels);
  CheckSides(coded_);
  AppendGeometry(file_, levels, wavelet_, coded_.rows, coded_.cols);
}

const Grid<float>& Compression::Transform() {
  const bool fits = coded_ == Sides{image_.Rows(), image_.Cols()};
  coefficients_ = fits ? TransformTheImage(image_, wavelet_, levels_)
                       : TransformTheImage(Padded(image_, levels_), wavelet_, levels_);
  return coefficients_;
}

void Compression::WriteMean() {
  mean_ = SubtractAverage(coefficients_, wavelet_, levels_);
  AppendMean(file_, mean_);
}

void Compression::WriteThreshold() {
  exponent_ = GetThreshold(coefficients_.Samples(), wavelet_);
  AppendExponent(file_, exponent_);
}

Grid<std::uint8_t> Compression::SetRegion(const Region& region, float share) {
  const std::int16_t widening = LeftShift(static_cast<std::int16_t>(SupportOfWavelet(wavelet_)), 1);
  mask_ = GetROIValues(coded_.rows, coded_.cols, region, widening, levels_);
  const double budget =
      coder_.HasBudget()
          ? static_cast<double>(budget_)
          : static_cast<float>(CheckedMul32(CheckedMul32(image_.Rows(), image_.Cols()), 8));
  switchPoint_ = ToInt32((1.0 - double{HeldShare(share)}) * budget);
  region_ = region;
  return mask_;
}

PassReport Compression::WritePasses(const PassListener& onPass) {
  const BandGrid grid{coded_.rows, coded_.cols, levels_};
  if (coder_.scan == ScanKind::kRanked) {
    const RestingOrder order(grid);
    return WriteWith<RankedEncoder, BitSymbolWriter>(order, onPass);
  }
  const auto order = MakeOrder(coder_.scan, grid);
  switch (coder_.symbols) {
    case SymbolKind::kBits:
      return WriteWith<PassEncoder, BitSymbolWriter>(*order, onPass);
    case SymbolKind::kWdr:
      return WriteWith<PassEncoder, WdrSymbolWriter>(*order, onPass);
    case SymbolKind::kAswdr:
      break;
  }
  return WriteWith<PassEncoder, AswdrSymbolWriter>(*order, onPass);
}

template <template <class> class Encoder, class Symbols, class Order>
PassReport Compression::WriteWith(Order& order, const PassListener& onPass) {
  const BitPlanes planes(order.Gather(coefficients_.Samples()), exponent_);
  coefficients_ = {};

  EncoderPlan plan{.budget = budget_,
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
      coder_, wavelet_, exponent_, [&](int pass, float) { return passes.Run(pass); },
      [&](const PassState& state) {
        if (onPass) onPass(report(state));
      });

  passes.Finish();
  if (coded_ != Sides{image_.Rows(), image_.Cols()}) {
    AppendSizeNote(file_, {image_.Rows(), image_.Cols()});
  }
  return report(last);
}

}  // namespace marovia
