#include "wavelet/transform.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "base/bits.h"
#include "base/checked.h"
#include "wavelet/catalogue.h"
#include "wavelet/level_lifting.h"
#include "wavelet/lifting.h"

namespace marovia {
namespace {

template <class T>
[[gnu::always_inline]] inline void DeinterleaveAs(std::span<const T> line, SplitLine& split) {
  float* low = split.Low().data();
  float* high = split.High().data();
  const std::size_t pairs = line.size() / 2;
  for (std::size_t i = 0; i < pairs; ++i) {
    low[i] = static_cast<float>(line[2 * i]);
    high[i] = static_cast<float>(line[2 * i + 1]);
  }
  if (line.size() % 2 != 0) low[pairs] = static_cast<float>(line.back());
}

MAROVIA_WIDE_VECTORS void Deinterleave(std::span<const std::uint8_t> line, SplitLine& split) {
  DeinterleaveAs(line, split);
}
MAROVIA_WIDE_VECTORS void Deinterleave(std::span<const float> line, SplitLine& split) {
  DeinterleaveAs(line, split);
}

MAROVIA_WIDE_VECTORS void Interleave(SplitLine& split, std::span<float> line) {
  const float* low = split.Low().data();
  const float* high = split.High().data();
  const std::size_t pairs = line.size() / 2;
  for (std::size_t i = 0; i < pairs; ++i) {
    line[2 * i] = low[i];
    line[2 * i + 1] = high[i];
  }
  if (line.size() % 2 != 0) line.back() = low[pairs];
}

// One level of a transform works on a corner of the coefficients.
LevelSides CornerOf(const Grid<float>& coefficients, int level) {
  return {coefficients.Rows() >> (level - 1), coefficients.Cols() >> (level - 1)};
}

// The samples of an image and all that becomes of them in an integer transform stay below 2^17.
constexpr Precision kForwardPrecision = Precision::kSingle;

template <class T>
void ForwardLevel(const Grid<T>& source, WaveletKind wavelet, LevelSides corner, int threads,
                  Grid<float>& coefficients) {
  LiftLevel<float>(
      {LiftingSteps(wavelet, Direction::kForward), kForwardPrecision}, corner, threads,
      [&](int r, SplitLine& line) { Deinterleave(source.Row(r), line); },
      [&](Band band, int k, std::span<const float> row) {
        std::copy(row.begin(), row.end(),
                  coefficients.Row(PermPlace(band, k, corner.rows)).begin());
      });
}

// `low` is the level's low band, what the coarser levels became; empty, it is as the coefficients
// have it. Emit takes the finished rows of the level: emit(row number, line).
template <class Emit>
void InverseLevel(const Grid<float>& coefficients, const Grid<float>& low, const Lifting& inverse,
                  LevelSides corner, int threads, Emit emit) {
  const auto cols = static_cast<std::size_t>(corner.cols);
  InvertLevel<float>(
      inverse, corner, threads,
      [&](Band band, int k, std::span<float> row) {
        const int place = InvPermPlace(band, k, corner.rows);
        const std::size_t made = place < low.Rows() ? static_cast<std::size_t>(low.Cols()) : 0;
        if (made > 0) std::copy_n(low.Row(place).begin(), made, row.begin());
        const auto rest = coefficients.Row(place).subspan(made, cols - made);
        std::copy(rest.begin(), rest.end(), row.begin() + static_cast<std::ptrdiff_t>(made));
      },
      emit);
}

Grid<float> CopyOf(const Grid<float>& coefficients, LevelSides corner) {
  Grid<float> copy(corner.rows, corner.cols, Unfilled{});
  for (int r = 0; r < corner.rows; ++r) {
    std::copy_n(coefficients.Row(r).begin(), static_cast<std::size_t>(corner.cols),
                copy.Row(r).begin());
  }
  return copy;
}

Grid<float> NextLowBand(const Grid<float>& coefficients, const Grid<float>& low,
                        const Lifting& inverse, LevelSides corner, int threads) {
  Grid<float> next(corner.rows, corner.cols, Unfilled{});
  InverseLevel(coefficients, low, inverse, corner, threads,
               [&](int r, SplitLine& line) { Interleave(line, next.Row(r)); });
  return next;
}

// Whether all values times `factor`, below 2^22 in magnitude, are whole numbers.
MAROVIA_WIDE_VECTORS bool AreWhole(std::span<const float> values, float factor) {
  std::int32_t fractions = 0;
  for (const float value : values) {
    const float scaled = value * factor;
    fractions |= ((scaled + kRounder<float>)-kRounder<float>) != scaled ? 1 : 0;
  }
  return fractions == 0;
}

// Going back a level, the integer wavelets make values at most 6.25 (5/3) or 8.3 (2+2,2) times as
// large, and a step sums four of them. Single precision is exact where that leaves all values
// multiples of a power of two that is at least 2^-24 of the largest sum.
Precision InversePrecision(std::span<const float> values, WaveletKind wavelet, int levels) {
  if (!IsInteger(wavelet)) return Precision::kDouble;
  const double growth = wavelet == WaveletKind::kInteger53 ? 7 : 9;
  const double bound = (LargestMagnitude(values) + 1.0) * std::pow(growth, levels);
  constexpr double kMost = 4194304.0;  // 2^22
  if (!(bound < kMost)) return Precision::kDouble;
  const auto factor = static_cast<float>(std::exp2(std::floor(std::log2(kMost / bound))));
  return AreWhole(values, factor) ? Precision::kSingle : Precision::kDouble;
}

// Whether every rounded value, and its magnitude, fits 16 bits.
MAROVIA_WIDE_VECTORS bool RoundToPixels(std::span<const float> values,
                                        std::span<std::uint8_t> pixels) {
  // Magnitudes are in the order of their bit patterns, and NaNs above all of them.
  constexpr auto kWhite = std::bit_cast<std::int32_t>(255.0F);
  constexpr auto kMostIn16Bits = std::bit_cast<std::int32_t>(32767.5F) - 1;
  std::int32_t tooLarge = 0;
  const std::size_t count = values.size();
  std::uint8_t* __restrict out = pixels.data();
  for (std::size_t i = 0; i < count; ++i) {
    const std::int32_t magnitude = std::bit_cast<std::int32_t>(values[i]) & INT32_MAX;
    tooLarge |= kMostIn16Bits - magnitude;
    const auto capped = std::bit_cast<float>(std::min(magnitude, kWhite));
    out[i] = static_cast<std::uint8_t>(
        static_cast<std::int32_t>((capped + kRounder<float>)-kRounder<float>));
  }
  return tooLarge >= 0;
}

void ForwardLevels(const Image& image, WaveletKind wavelet, int levels, int threads,
                   Grid<float>& coefficients) {
  if (levels == 0) {
    std::copy(image.Samples().begin(), image.Samples().end(), coefficients.Samples().begin());
    return;
  }
  ForwardLevel(image, wavelet, CornerOf(coefficients, 1), threads, coefficients);
  for (int level = 2; level <= levels; ++level) {
    const LevelSides corner = CornerOf(coefficients, level);
    ForwardLevel(CopyOf(coefficients, corner), wavelet, corner, threads, coefficients);
  }
}

}  // namespace

Grid<float> TransformTheImage(const Image& image, WaveletKind wavelet, int levels, int threads) {
  Grid<float> coefficients(image.Rows(), image.Cols(), Unfilled{});
  ForwardLevels(image, wavelet, levels, threads, coefficients);
  if (IsInteger(wavelet)) ScalingOfWT(coefficients, levels, Direction::kForward, threads);
  return coefficients;
}

Image InvertTheTransformQuant(Grid<float>& coefficients, WaveletKind wavelet, int levels,
                              int threads) {
  if (IsInteger(wavelet)) ScalingOfWT(coefficients, levels, Direction::kInverse, threads);
  Image image(coefficients.Rows(), coefficients.Cols(), Unfilled{});
  if (levels == 0) {
    ToPixels(coefficients.Samples(), image.Samples());
    return image;
  }
  const Lifting inverse{LiftingSteps(wavelet, Direction::kInverse),
                        InversePrecision(coefficients.Samples(), wavelet, levels)};
  Grid<float> low;
  for (int level = levels; level > 1; --level) {
    low = NextLowBand(coefficients, low, inverse, CornerOf(coefficients, level), threads);
  }
  InverseLevel(coefficients, low, inverse, CornerOf(coefficients, 1), threads,
               [&](int r, SplitLine& line) {
                 Buffer<float> samples(image.Row(r).size());
                 Interleave(line, samples);
                 ToPixels(samples, image.Row(r));
               });
  return image;
}

void ToPixels(std::span<const float> values, std::span<std::uint8_t> pixels) {
  if (!RoundToPixels(values, pixels)) {
    Fail(Errc::kOverflow, "Overflow: a reconstructed value leaves 16 bits.");
  }
}

}  // namespace marovia
