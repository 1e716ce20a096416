#include "context/context_bands.h"

#include <algorithm>
#include <bit>

#include "base/bits.h"
#include "base/checked.h"
#include "wavelet/catalogue.h"

namespace marovia {
namespace {

// The halved diagonal bands gain 0.25 dB at lossy rates of a lossless file.
int ShiftOf(const ContextHeader& header, BandKind kind, int level) {
  if (!IsInteger(header.wavelet)) return 0;
  if (kind == BandKind::kLow) return level + 1;
  return kind == BandKind::kDiagonal ? level - 1 : level;
}

ContextBand MakeBand(const ContextHeader& header, BandKind kind, int level) {
  return {kind, level, header.PaddedRows() >> level, header.PaddedCols() >> level,
          ShiftOf(header, kind, level)};
}

template <class Sample>
[[gnu::always_inline]] inline void PixelPairs(const std::uint8_t* pixels, std::size_t pairs,
                                              Sample* __restrict low, Sample* __restrict high) {
  for (std::size_t i = 0; i < pairs; ++i) {
    low[i] = static_cast<Sample>(pixels[2 * i]);
    high[i] = static_cast<Sample>(pixels[2 * i + 1]);
  }
}

MAROVIA_WIDE_VECTORS void TakeApart(const std::uint8_t* row, std::size_t pairs, float* low,
                                    float* high) {
  PixelPairs(row, pairs, low, high);
}
MAROVIA_WIDE_VECTORS void TakeApart(const std::uint8_t* row, std::size_t pairs, std::int32_t* low,
                                    std::int32_t* high) {
  PixelPairs(row, pairs, low, high);
}

// Samples of four bytes are moved alike, whatever they are.
template <class Sample>
[[gnu::always_inline]] inline void MovePairs(const Sample* __restrict row, std::size_t pairs,
                                             Sample* __restrict low, Sample* __restrict high) {
  for (std::size_t i = 0; i < pairs; ++i) {
    low[i] = row[2 * i];
    high[i] = row[2 * i + 1];
  }
}

MAROVIA_WIDE_VECTORS void TakeApart(const float* row, std::size_t pairs, float* low, float* high) {
  MovePairs(row, pairs, low, high);
}
MAROVIA_WIDE_VECTORS void TakeApart(const std::int32_t* row, std::size_t pairs, std::int32_t* low,
                                    std::int32_t* high) {
  MovePairs(row, pairs, low, high);
}

template <class Sample>
[[gnu::always_inline]] inline void MergePairs(const Sample* __restrict low,
                                              const Sample* __restrict high, std::size_t pairs,
                                              Sample* __restrict row) {
  for (std::size_t i = 0; i < pairs; ++i) {
    row[2 * i] = low[i];
    row[2 * i + 1] = high[i];
  }
}

MAROVIA_WIDE_VECTORS void PutTogether(const float* low, const float* high, std::size_t pairs,
                                      float* row) {
  MergePairs(low, high, pairs, row);
}
MAROVIA_WIDE_VECTORS void PutTogether(const std::int32_t* low, const std::int32_t* high,
                                      std::size_t pairs, std::int32_t* row) {
  MergePairs(low, high, pairs, row);
}

MAROVIA_WIDE_VECTORS void RoundToPixels(const float* row, std::size_t count,
                                        std::uint8_t* __restrict pixels) {
  // The rounded value lies in the lowest bits of the sum.
  // Bit patterns as integers are in the order of the values, negative ones below all others.
  constexpr auto kWhite = std::bit_cast<std::int32_t>(255.0F);
  for (std::size_t i = 0; i < count; ++i) {
    const std::int32_t held = std::min(std::max(std::bit_cast<std::int32_t>(row[i]), 0), kWhite);
    const float rounded = std::bit_cast<float>(held) + kRounder<float>;
    pixels[i] = static_cast<std::uint8_t>(std::bit_cast<std::uint32_t>(rounded));
  }
}

MAROVIA_WIDE_VECTORS void HoldToPixels(const std::int32_t* row, std::size_t count,
                                       std::uint8_t* __restrict pixels) {
  for (std::size_t i = 0; i < count; ++i) {
    pixels[i] = static_cast<std::uint8_t>(std::min(std::max(row[i], 0), 255));
  }
}

}  // namespace

std::vector<ContextBand> ContextBands(const ContextHeader& header) {
  std::vector<ContextBand> bands{MakeBand(header, BandKind::kLow, header.levels)};
  for (int level = header.levels; level >= 1; --level) {
    for (const BandKind kind : {BandKind::kRight, BandKind::kLower, BandKind::kDiagonal}) {
      bands.push_back(MakeBand(header, kind, level));
    }
  }
  return bands;
}

Region RegionOfBand(const Region& region, const ContextBand& band) {
  constexpr int kAround = 2;
  return {(region.row1 >> band.level) - kAround, (region.col1 >> band.level) - kAround,
          (region.row2 >> band.level) + kAround, (region.col2 >> band.level) + kAround};
}

template <class Sample>
void FetchPixels(const Image& image, int r, BasicSplitLine<Sample>& line) {
  const auto row = image.Row(std::min(r, image.Rows() - 1));
  const std::size_t pairs = row.size() / 2;
  TakeApart(row.data(), pairs, line.Low().data(), line.High().data());
  if (row.size() % 2 != 0) line.Low()[pairs] = static_cast<Sample>(row.back());
  const auto last = static_cast<Sample>(row.back());
  std::ranges::fill(line.Low().subspan(pairs + row.size() % 2), last);
  std::ranges::fill(line.High().subspan(pairs), last);
}

template <class Sample>
void Deinterleave(std::span<const Sample> row, BasicSplitLine<Sample>& line) {
  TakeApart(row.data(), row.size() / 2, line.Low().data(), line.High().data());
}

template <class Sample>
void Interleave(BasicSplitLine<Sample>& line, std::span<Sample> row) {
  PutTogether(line.Low().data(), line.High().data(), row.size() / 2, row.data());
}

void StorePixels(std::span<const float> row, std::span<std::uint8_t> pixels) {
  RoundToPixels(row.data(), pixels.size(), pixels.data());
}

void StorePixels(std::span<const std::int32_t> row, std::span<std::uint8_t> pixels) {
  HoldToPixels(row.data(), pixels.size(), pixels.data());
}

template void FetchPixels(const Image&, int, BasicSplitLine<float>&);
template void FetchPixels(const Image&, int, BasicSplitLine<std::int32_t>&);
template void Deinterleave(std::span<const float>, BasicSplitLine<float>&);
template void Deinterleave(std::span<const std::int32_t>, BasicSplitLine<std::int32_t>&);
template void Interleave(BasicSplitLine<float>&, std::span<float>);
template void Interleave(BasicSplitLine<std::int32_t>&, std::span<std::int32_t>);

}  // namespace marovia
