// One level of a transform, between rows that are handed in and rows that are handed out: neither
// end has to be a picture of its own.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

#include "base/parallel.h"
#include "wavelet/lifting.h"

namespace marovia {

struct LevelSides {
  int rows;
  int cols;

  [[nodiscard]] std::size_t Samples() const {
    return static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols);
  }
};

// A direction of a transform, and how exactly its rounded steps have to be computed.
struct Lifting {
  std::span<const LiftingStep> steps;
  Precision precision = Precision::kDouble;
};

// Lifts the rows of an image against each other, all columns at once. Rows are fetched in
// interleaved order just before they are needed and stored as soon as they are done, so that only
// kRing of them are in memory.
template <class Sample>
class RowLifter {
 public:
  RowLifter(const Lifting& lifting, LevelSides sides)
      : lifting_(lifting),
        count_(sides.rows),
        width_(static_cast<std::size_t>(sides.cols)),
        ring_(kRing * width_) {}

  // fetch(band, k, row) fills `row` with the k-th row of a band; store(band, k, row) takes it back,
  // for the rows that a share of the low band has, and the high ones between them.
  template <class Fetch, class Store>
  void Run(Share::Range share, Fetch fetch, Store store) {
    const int first = static_cast<int>(share.first);
    const int last = static_cast<int>(share.last);
    const int lowDone = LastLag(Band::kLow);
    const int highDone = LastLag(Band::kHigh);
    const int begin = std::max(0, first - kBefore);
    int fetched = firstRow_ = 2 * begin;
    for (int i = begin; i < last + std::max(lowDone, highDone); ++i) {
      for (; fetched < std::min(count_, 2 * i + kAhead); ++fetched) {
        fetch(fetched % 2 == 0 ? Band::kLow : Band::kHigh, fetched / 2, Slot(fetched));
      }
      LiftAt(i);
      if (IsIn(i - lowDone, first, last)) StoreAt(Band::kLow, i - lowDone, store);
      if (IsIn(i - highDone, first, last)) StoreAt(Band::kHigh, i - highDone, store);
    }
  }

 private:
  // In the i-th round the steps reach from row 2i - 6 (the first neighbour of a curved step that
  // lags by 2) to row 2i + 4 (the last one of a curved step that does not lag).
  static constexpr int kAhead = 5;
  static constexpr std::size_t kRing = 16;
  // A share begins so many pairs of rows early: together the steps of a wavelet reach no further
  // than 5 rows up.
  static constexpr int kBefore = 3;

  static bool IsIn(int k, int first, int last) { return k >= first && k < last; }

  [[nodiscard]] int CountOf(Band band) const {
    return band == Band::kLow ? (count_ + 1) / 2 : count_ / 2;
  }

  [[nodiscard]] int LastLag(Band band) const {
    int lag = 0;
    for (const LiftingStep& step : lifting_.steps) {
      if (step.target == band) lag = std::max(lag, step.lag);
    }
    return lag;
  }

  std::span<Sample> Slot(int row) {
    return std::span(ring_).subspan(static_cast<std::size_t>(row) % kRing * width_, width_);
  }

  // What lies above the first row is reflected at the top of the image, and missing elsewhere: then
  // each step leaves out as many rows as it reaches up.
  void LiftAt(int round) {
    if (count_ < 2) return;
    int from = firstRow_;
    for (const LiftingStep& step : lifting_.steps) {
      if (firstRow_ > 0) from += ReachOf(step.rule);
      const int k = round - step.lag;
      const int row = step.target == Band::kLow ? 2 * k : 2 * k + 1;
      if (row < from || k < 0 || k >= CountOf(step.target)) continue;
      ApplyStep(step, lifting_.precision, Slot(row),
                {Neighbour(row - 3), Neighbour(row - 1), Neighbour(row + 1), Neighbour(row + 3)});
    }
  }

  static int ReachOf(StepRule rule) {
    if (rule == StepRule::kTimes || rule == StepRule::kOver) return 0;
    return rule == StepRule::kCurved ? 3 : 1;
  }

  const Sample* Neighbour(int row) { return Slot(Reflect(row, count_)).data(); }

  template <class Store>
  void StoreAt(Band band, int k, Store& store) {
    if (k < CountOf(band)) store(band, k, Slot(band == Band::kLow ? 2 * k : 2 * k + 1));
  }

  Lifting lifting_;
  int count_;
  std::size_t width_;
  std::vector<Sample> ring_;
  int firstRow_ = 0;
};

// Calls run(share, lifter, line) for the shares of a level, each with a lifter and a line of its
// own.
template <class Sample, class Run>
void ForShares(const Lifting& lifting, LevelSides sides, int threads, Run run) {
  RunShares(UsefulThreads(threads, sides.Samples()), [&](Share share) {
    RowLifter<Sample> lifter(lifting, sides);
    BasicSplitLine<Sample> line(sides.cols);
    line.Resize(sides.cols);
    run(share.Of(static_cast<std::size_t>(sides.rows + 1) / 2), lifter, line);
  });
}

// fetch(r, line) fills both bands of a split line with row r, which several threads may ask for;
// store(band, k, row) takes the k-th row of a band in band order, its low half first.
template <class Sample, class Fetch, class Store>
void LiftLevel(const Lifting& lifting, LevelSides sides, int threads, Fetch fetch, Store store) {
  ForShares<Sample>(
      lifting, sides, threads, [&](auto share, RowLifter<Sample>& lifter, auto& line) {
        lifter.Run(
            share,
            [&](Band band, int k, std::span<Sample> row) {
              fetch(band == Band::kLow ? 2 * k : 2 * k + 1, line);
              line.Lift(lifting.steps, lifting.precision);
              line.StoreInBandOrder(row);
            },
            [&](Band band, int k, std::span<const Sample> row) { store(band, k, row); });
      });
}

// Back: fetch(band, k, row) fills the k-th row of a band, its low half first, for several threads
// perhaps; emit(r, line) takes both bands of the finished row r.
template <class Sample, class Fetch, class Emit>
void InvertLevel(const Lifting& lifting, LevelSides sides, int threads, Fetch fetch, Emit emit) {
  ForShares<Sample>(
      lifting, sides, threads, [&](auto share, RowLifter<Sample>& lifter, auto& line) {
        lifter.Run(
            share, [&](Band band, int k, std::span<Sample> row) { fetch(band, k, row); },
            [&](Band band, int k, std::span<const Sample> row) {
              line.LoadFromBandOrder(row);
              line.Lift(lifting.steps, lifting.precision);
              emit(band == Band::kLow ? 2 * k : 2 * k + 1, line);
            });
      });
}

}  // namespace marovia
