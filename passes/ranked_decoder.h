// The passes of a decompressor that visits the most probable coefficient next: what RankedEncoder
// sends, taken back.
#pragma once

#include <algorithm>
#include <cmath>
#include <deque>

#include "passes/ranked_order.h"
#include "passes/run.h"

namespace marovia {

template <class Symbols>
class RankedDecoder {
 public:
  // Of the homes, the first `kept` get values.
  RankedDecoder(const RestingOrder& resting, std::size_t kept, const Symbols& symbols,
                std::int64_t budget)
      : kept_(kept), order_(resting), symbols_(symbols), budget_(budget) {}

  // Pass number `pass`, from 1 without a gap, at its threshold. False where the budget or the
  // stream ended it.
  bool Run(int /*pass*/, float threshold) {
    threshold_ = threshold;
    foundBefore_ = found_.size();
    refinedCount_ = 0;
    waiting_ = order_.Pending();
    if (ReadRun()) order_.Visit(search_, [this](Home home) { return Read(home); });
    return !ended_ && !Spent() && Refine();
  }

  [[nodiscard]] std::int64_t FoundCount() const { return static_cast<std::int64_t>(found_.size()); }
  [[nodiscard]] std::int64_t BitsRead() const { return symbols_.BitsRead(); }
  // Whether the stream ended before the budget.
  [[nodiscard]] bool StreamEnded() const { return streamEnded_; }

  // Puts every value found into the middle of what the passes leave open. To be called once, at the
  // end.
  void PlaceInTheMiddle() {
    std::size_t i = 0;
    for (Found& found : found_) {
      const bool refined = i < refinedCount_ || i >= foundBefore_;
      found.value = LastRefinement(found.value, threshold_, refined);
      ++i;
    }
  }

  // Every value to its position in a grid, 0 where nothing is found, by an order of the homes that
  // are kept.
  void Scatter(const RestingOrder& kept, std::span<float> grid, int /*threads*/) const {
    std::fill(grid.begin(), grid.end(), 0.0F);
    for (const Found& found : found_) {
      if (found.home < kept_) grid[kept.PositionOf(found.home)] = found.value;
    }
  }

 private:
  struct Found {
    Home home;
    float value;
  };

  struct Search {
    std::uint32_t run = 0;  // homes to visit up to and with the next one found

    MAROVIA_INLINE bool Finds(Home, unsigned visited) { return (run -= visited) == 0; }
    MAROVIA_INLINE int FirstOf(std::size_t, std::uint64_t homes) {
      const auto count = static_cast<std::uint32_t>(CountBits(homes));
      if (run > count) {
        run -= count;
        return 64;
      }
      return PlaceOfBit(homes, static_cast<int>(run));
    }
  };

  MAROVIA_INLINE bool Read(Home home) {
    bool negative = false;
    if (!symbols_.ReadSign(negative)) return Ended();
    found_.push_back({home, negative ? -threshold_ : threshold_});
    if (Spent()) {
      ended_ = true;
      return false;
    }
    return ReadRun();
  }

  // False where the run leads behind all homes that wait, too: the first part of the pass is over.
  MAROVIA_INLINE bool ReadRun() {
    if (!symbols_.ReadNumber(search_.run)) return Ended();
    waiting_ -= search_.run;
    return waiting_ >= 0;
  }

  [[nodiscard]] bool Spent() const { return symbols_.BitsRead() >= budget_; }

  bool Ended() {
    streamEnded_ = true;
    ended_ = true;
    return false;
  }

  bool Refine() {
    return RunOnCopy(symbols_, [&](Symbols& symbols) MAROVIA_INLINE_LAMBDA {
      for (auto found = found_.begin(); refinedCount_ < foundBefore_; ++found) {
        bool moves = false;
        if (!symbols.ReadRefinement(moves)) return Ended();
        ++refinedCount_;
        found->value += std::copysign(moves ? threshold_ : 0, found->value);
        if (symbols.BitsRead() >= budget_) return false;
      }
      return true;
    });
  }

  std::size_t kept_;
  RankedOrder order_;
  Symbols symbols_;
  std::int64_t budget_;

  std::deque<Found> found_;       // in the order of discovery; grows without being copied
  std::size_t foundBefore_ = 0;   // in the passes before this one
  std::size_t refinedCount_ = 0;  // in this pass
  float threshold_ = 0;
  Search search_;
  std::int64_t waiting_ = 0;  // homes pending behind that one in this pass
  bool ended_ = false;
  bool streamEnded_ = false;
};

}  // namespace marovia
