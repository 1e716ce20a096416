// One level of a transform whose sides are even, between rows that are handed in and rows that are
// handed out: neither end has to be a picture of its own.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>

#include "wavelet/row_lifter.h"

namespace marovia {

struct LevelSides {
  int rows;
  int cols;
};

// fetch(r, line) fills both bands of a split line with row r; store(band, k, row) takes the k-th row
// of a band, its low half first.
template <class Sample, class Fetch, class Store>
void LiftLevel(WaveletKind wavelet, LevelSides sides, Fetch fetch, Store store) {
  const auto steps = LiftingSteps(wavelet, Direction::kForward);
  BasicSplitLine<Sample> line(sides.cols);
  line.Resize(sides.cols);
  BasicRowLifter<Sample>(steps, Precision::kDouble, sides.rows, sides.cols)
      .Run(
          [&](Band band, int k, std::span<Sample> row) {
            fetch(band == Band::kLow ? 2 * k : 2 * k + 1, line);
            line.Lift(steps, Precision::kDouble);
            const auto high = std::copy(line.Low().begin(), line.Low().end(), row.begin());
            std::copy(line.High().begin(), line.High().end(), high);
          },
          [&](Band band, int k, std::span<const Sample> row) { store(band, k, row); });
}

// Back: fetch(band, k, row) fills the k-th row of a band, its low half first; emit(r, line) takes
// both bands of the finished row r.
template <class Sample, class Fetch, class Emit>
void InvertLevel(WaveletKind wavelet, LevelSides sides, Fetch fetch, Emit emit) {
  const auto steps = LiftingSteps(wavelet, Direction::kInverse);
  BasicSplitLine<Sample> line(sides.cols);
  line.Resize(sides.cols);
  BasicRowLifter<Sample>(steps, Precision::kDouble, sides.rows, sides.cols)
      .Run([&](Band band, int k, std::span<Sample> row) { fetch(band, k, row); },
           [&](Band band, int k, std::span<const Sample> row) {
             const auto half = static_cast<std::ptrdiff_t>(row.size() / 2);
             std::copy(row.begin(), row.begin() + half, line.Low().begin());
             std::copy(row.begin() + half, row.end(), line.High().begin());
             line.Lift(steps, Precision::kDouble);
             emit(band == Band::kLow ? 2 * k : 2 * k + 1, line);
           });
}

}  // namespace marovia
