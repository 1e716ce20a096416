// The passes of every decompressor: what PassEncoder sends, taken back.
//
// A run says how many pending homes lie between two that are found, so the decoder jumps: over the
// words of a set of homes by counting their bits, over whole stretches and blocks that hold nothing
// found by subtraction.
#pragma once

#include <bit>
#include <cmath>
#include <vector>

#include "coding/found_state.h"
#include "coding/thresholds.h"
#include "coding/visiting_order.h"

namespace marovia {

template <class Symbols>
class PassDecoder {
 public:
  PassDecoder(VisitingOrder& order, Symbols& symbols, std::int64_t budget)
      : order_(order),
        symbols_(symbols),
        budget_(budget),
        found_(order),
        values_(order.HomeCount()) {}

  // Pass number `pass`, from 1 without a gap, at its threshold. False where the budget or the
  // stream ended it.
  bool Run(int pass, float threshold) {
    Begin(pass, threshold);
    return ReadRun() && SignificancePass() && !Spent() && RefinementPass();
  }

  [[nodiscard]] std::int64_t FoundCount() const { return found_.Count(); }
  // Whether the stream ended before the budget.
  [[nodiscard]] bool StreamEnded() const { return streamEnded_; }

  // Puts every value found into the middle of what the passes leave open. To be called once, at the
  // end.
  void PlaceInTheMiddle() {
    std::int64_t visited = 0;
    const HomeList found = found_.ListBefore(order_);
    for (const Home home : found.Homes()) {
      values_[home] = LastRefinement(values_[home], threshold_, visited++ < refinedCount_);
    }
    for (std::size_t i = 0; i < found_.Now().WordCount(); ++i) {
      for (std::uint64_t bits = found_.Now().Word(i); bits != 0; bits &= bits - 1) {
        float& value = values_[i * 64 + static_cast<std::size_t>(std::countr_zero(bits))];
        value = LastRefinement(value, threshold_, true);
      }
    }
  }

  // The value of every home, 0 where it is not found.
  [[nodiscard]] std::span<const float> Values() const { return values_; }

 private:
  void Begin(int pass, float threshold) {
    threshold_ = threshold;
    refinedCount_ = 0;
    if (pass > 1) {
      found_.Settle();
      order_.Rebuild(found_.Before());
    }
  }

  [[nodiscard]] bool Spent() const { return symbols_.BitsRead() >= budget_; }

  bool Ended() {
    streamEnded_ = true;
    return false;
  }

  bool ReadRun() {
    std::uint32_t number = 0;
    if (!symbols_.ReadNumber(number)) return Ended();
    run_ = number;
    return true;
  }

  bool SignificancePass() {
    for (std::size_t i = 0; i < order_.Stretches().size(); ++i) {
      if (!FindIn(i)) return false;
    }
    return true;
  }

  bool FindIn(std::size_t index) {
    const std::int64_t pending = found_.PendingInStretch(index);
    if (run_ > pending) {
      run_ -= pending;
      return true;
    }
    const Stretch& stretch = order_.Stretches()[index];
    return stretch.ordered ? FindInOrder(order_.OrderOf(index)) : FindInTurn(stretch);
  }

  bool FindInTurn(const Stretch& stretch) {
    for (std::size_t i = stretch.first / 64; i * 64 < stretch.last; ++i) {
      const std::uint64_t mask = HomeSet::RangeMask(i, stretch.first, stretch.last);
      if (mask == ~std::uint64_t{0} && run_ > found_.PendingInWord(i)) {
        run_ -= found_.PendingInWord(i);
      } else if (!FindAmong(static_cast<Home>(i * 64), ~found_.Before().Word(i) & mask)) {
        return false;
      }
    }
    return true;
  }

  bool FindInOrder(const StretchOrder& order) {
    return FindInList(order.homes.size(), [&](std::size_t i) { return order.homes[i]; }) &&
           FindInBlocks(order.blocksOfFound) && FindInBlocks(order.blocksWithFound) &&
           FindInList(4 * order.blocksWithout.size(), [&](std::size_t i) {
             return 4 * order.blocksWithout[i / 4] + static_cast<Home>(i % 4);
           });
  }

  bool FindInBlocks(std::span<const Home> blocks) {
    for (const Home block : blocks) {
      std::uint64_t pending = ~found_.Before().Block(block) & 0xF;
      while (run_ <= kBlockCounts[pending]) {
        const Home place = kBlockPlaces[pending][static_cast<std::size_t>(run_ - 1)];
        if (!Take(4 * block + place)) return false;
        pending &= 0xEU << place;
      }
      run_ -= kBlockCounts[pending];
    }
    return true;
  }

  // Homes that are all pending: homeAt(0) to homeAt(count - 1).
  template <class HomeAt>
  bool FindInList(std::size_t count, HomeAt homeAt) {
    auto left = static_cast<std::int64_t>(count);
    while (run_ <= left) {
      left -= run_;
      if (!Take(homeAt(count - static_cast<std::size_t>(left) - 1))) return false;
    }
    run_ -= left;
    return true;
  }

  // The homes from `base` on that the bits of `pending` mark, the lowest first.
  bool FindAmong(Home base, std::uint64_t pending) {
    while (true) {
      const int count = CountBits(pending);
      if (run_ > count) {
        run_ -= count;
        return true;
      }
      const int place = PlaceOfBit(pending, static_cast<int>(run_));
      if (!Take(base + static_cast<Home>(place))) return false;
      pending &= ~std::uint64_t{1} << place;
    }
  }

  bool Take(Home home) {
    bool negative = false;
    if (!symbols_.ReadSign(negative)) return Ended();
    values_[home] = negative ? -threshold_ : threshold_;
    found_.Take(home);
    return !Spent() && ReadRun();
  }

  bool RefinementPass() {
    const HomeList found = found_.ListBefore(order_);
    for (const Home home : found.Homes()) {
      bool moves = false;
      if (!symbols_.ReadRefinement(moves)) return Ended();
      ++refinedCount_;
      float& value = values_[home];
      value += std::copysign(static_cast<float>(moves) * threshold_, value);
      if (Spent()) return false;
    }
    return true;
  }

  VisitingOrder& order_;
  Symbols& symbols_;
  std::int64_t budget_;

  FoundState found_;
  std::vector<float> values_;
  std::int64_t refinedCount_ = 0;  // in this pass
  std::int64_t run_ = 0;           // pending homes up to and with the next one found
  float threshold_ = 0;
  bool streamEnded_ = false;
};

}  // namespace marovia
