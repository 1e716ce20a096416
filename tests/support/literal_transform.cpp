#include "tests/support/literal_transform.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <vector>

#include "base/checked.h"

namespace marovia::literal {
namespace {

constexpr int kIntegerLevelLimit = 4;

int LevelLimitOfSide(WaveletKind wavelet, int side) {
  const int limit = ToInt16(std::log(static_cast<double>(side)) / std::log(2.0)) - 2;
  return wavelet == WaveletKind::kDaub97 ? limit : std::min(limit, kIntegerLevelLimit);
}

// Applies `change` to the samples of column c, rows 0 to n - 1, as one line.
void ChangeColumn(Grid<float>& grid, int c, int n, auto change) {
  std::vector<float> line(static_cast<std::size_t>(n));
  for (int r = 0; r < n; ++r) line[static_cast<std::size_t>(r)] = grid(r, c);
  change(std::span<float>(line));
  for (int r = 0; r < n; ++r) grid(r, c) = line[static_cast<std::size_t>(r)];
}

void ChangeRow(Grid<float>& grid, int r, int n, auto change) {
  change(grid.Row(r).first(static_cast<std::size_t>(n)));
}

void ScaleCorner(Grid<float>& transform, int rows, int cols, double factor) {
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < cols; ++c) {
      transform(r, c) = static_cast<float>(transform(r, c) * factor);
    }
  }
}

}  // namespace

int LevelLimit(WaveletKind wavelet, int rows, int cols) {
  return std::min(LevelLimitOfSide(wavelet, rows), LevelLimitOfSide(wavelet, cols));
}

void TransformLevels(Grid<float>& transform, WaveletKind wavelet, int levels) {
  const auto forward = [&](std::span<float> x) {
    SymmWavTr2D(wavelet, x);
    Perm(x);
  };
  for (int level = 1; level <= levels; ++level) {
    const int rows = transform.Rows() >> (level - 1);
    const int cols = transform.Cols() >> (level - 1);
    for (int r = 0; r < rows; ++r) ChangeRow(transform, r, cols, forward);
    for (int c = 0; c < cols; ++c) ChangeColumn(transform, c, rows, forward);
  }
}

void InvertLevels(Grid<float>& transform, WaveletKind wavelet, int levels) {
  const auto inverse = [&](std::span<float> x) {
    INVPERM(x);
    InvSymmWavTr2D(wavelet, x);
  };
  for (int level = levels; level >= 1; --level) {
    const int rows = transform.Rows() >> (level - 1);
    const int cols = transform.Cols() >> (level - 1);
    for (int c = 0; c < cols; ++c) ChangeColumn(transform, c, rows, inverse);
    for (int r = 0; r < rows; ++r) ChangeRow(transform, r, cols, inverse);
  }
}

void ScalingOfWT(Grid<float>& transform, int levels, int mode) {
  const double factor = mode == 1 ? 2.0 : 0.5;
  int rows = transform.Rows();
  int cols = transform.Cols();
  for (int level = 1; level <= levels; ++level) {
    ScaleCorner(transform, rows, cols, factor);
    // Rounded where the bands truncate: at an odd side the two differ by one. Part of the format.
    rows = ToInt16(rows / 2.0);
    cols = ToInt16(cols / 2.0);
  }
  ScaleCorner(transform, rows, cols, factor);
}

float SubtractAverage(Grid<float>& transform, WaveletKind wavelet, int levels) {
  const int rows = transform.Rows() >> levels;
  const int cols = transform.Cols() >> levels;
  float sum = 0;
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < cols; ++c) sum += transform(r, c);
  }
  const double quotient = static_cast<double>(sum) / (rows * cols);
  const float mean = wavelet == WaveletKind::kDaub97 ? sum / static_cast<float>(rows * cols)
                                                     : static_cast<float>(ToInt32(quotient));
  AddAverage(transform, levels, -mean);
  return mean;
}

void AddAverage(Grid<float>& transform, int levels, float mean) {
  for (int r = 0; r < transform.Rows() >> levels; ++r) {
    for (int c = 0; c < transform.Cols() >> levels; ++c) transform(r, c) += mean;
  }
}

std::uint8_t ToPixel(float value) {
  const int magnitude = ToInt16(std::abs(static_cast<int>(ToInt16(value))));
  return static_cast<std::uint8_t>(std::min(magnitude, 255));
}

Grid<float> TransformTheImage(const Image& image, WaveletKind wavelet, int levels) {
  Grid<float> transform(image.Rows(), image.Cols());
  std::copy(image.Samples().begin(), image.Samples().end(), transform.Samples().begin());
  TransformLevels(transform, wavelet, levels);
  if (wavelet != WaveletKind::kDaub97) ScalingOfWT(transform, levels, 1);
  return transform;
}

Image InvertTheTransformQuant(Grid<float> quantized, WaveletKind wavelet, int levels) {
  if (wavelet != WaveletKind::kDaub97) ScalingOfWT(quantized, levels, -1);
  InvertLevels(quantized, wavelet, levels);
  Image image(quantized.Rows(), quantized.Cols());
  for (int r = 0; r < image.Rows(); ++r) {
    for (int c = 0; c < image.Cols(); ++c) image(r, c) = ToPixel(quantized(r, c));
  }
  return image;
}

}  // namespace marovia::literal
