// The lifting of whole rows of an image against each other, all columns at once.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

#include "wavelet/lifting.h"

namespace marovia {

// Lifts `count` rows of `width` samples. Rows are fetched in interleaved order just before they are
// needed and stored as soon as they are done, so that only kRing of them are in memory.
template <class Sample>
class BasicRowLifter {
 public:
  BasicRowLifter(std::span<const LiftingStep> steps, Precision precision, int count, int width)
      : steps_(steps),
        precision_(precision),
        count_(count),
        width_(static_cast<std::size_t>(width)),
        ring_(kRing * static_cast<std::size_t>(width)) {}

  // fetch(band, k, row) fills `row` with the k-th row of a band; store(band, k, row) takes it back.
  template <class Fetch, class Store>
  void Run(Fetch fetch, Store store) {
    const int lowDone = LastLag(Band::kLow);
    const int highDone = LastLag(Band::kHigh);
    const int end = CountOf(Band::kLow) + std::max(lowDone, highDone);
    int fetched = 0;
    for (int i = 0; i < end; ++i) {
      for (; fetched < std::min(count_, 2 * i + kAhead); ++fetched) {
        fetch(fetched % 2 == 0 ? Band::kLow : Band::kHigh, fetched / 2, Slot(fetched));
      }
      LiftAt(i);
      StoreAt(Band::kLow, i - lowDone, store);
      StoreAt(Band::kHigh, i - highDone, store);
    }
  }

 private:
  // In the i-th round the steps reach from row 2i - 6 (the first neighbour of a curved step that
  // lags by 2) to row 2i + 4 (the last one of a curved step that does not lag).
  static constexpr int kAhead = 5;
  static constexpr std::size_t kRing = 16;

  [[nodiscard]] int CountOf(Band band) const {
    return band == Band::kLow ? (count_ + 1) / 2 : count_ / 2;
  }

  [[nodiscard]] int LastLag(Band band) const {
    int lag = 0;
    for (const LiftingStep& step : steps_) {
      if (step.target == band) lag = std::max(lag, step.lag);
    }
    return lag;
  }

  std::span<Sample> Slot(int row) {
    return std::span(ring_).subspan(static_cast<std::size_t>(row) % kRing * width_, width_);
  }

  void LiftAt(int round) {
    if (count_ < 2) return;
    for (const LiftingStep& step : steps_) {
      const int k = round - step.lag;
      if (k < 0 || k >= CountOf(step.target)) continue;
      const int row = step.target == Band::kLow ? 2 * k : 2 * k + 1;
      ApplyStep(step, precision_, Slot(row),
                {Neighbour(row - 3), Neighbour(row - 1), Neighbour(row + 1), Neighbour(row + 3)});
    }
  }

  const Sample* Neighbour(int row) { return Slot(Reflect(row, count_)).data(); }

  template <class Store>
  void StoreAt(Band band, int k, Store& store) {
    if (k < 0 || k >= CountOf(band)) return;
    store(band, k, Slot(band == Band::kLow ? 2 * k : 2 * k + 1));
  }

  std::span<const LiftingStep> steps_;
  Precision precision_;
  int count_;
  std::size_t width_;
  std::vector<Sample> ring_;
};

using RowLifter = BasicRowLifter<float>;

}  // namespace marovia
