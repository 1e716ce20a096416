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
  PassDecoder(VisitingOrder& order, const Symbols& symbols, std::int64_t budget)
      : order_(order),
        budget_(budget),
        found_(order),
        values_(order.HomeCount()),
        cursor_{symbols} {}

  // Pass number `pass`, from 1 without a gap, at its threshold. False where the budget or the
  // stream ended it.
  bool Run(int pass, float threshold) {
    Begin(pass, threshold);
    const bool begun = WithCursor([&](Cursor& at) { return ReadRun(at); });
    return begun && SignificancePass() && !Spent(cursor_) && RefinementPass();
  }

  [[nodiscard]] std::int64_t FoundCount() const { return found_.Count(); }
  [[nodiscard]] std::int64_t BitsRead() const { return cursor_.symbols.BitsRead(); }
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
  // The place in the stream.
  struct Cursor {
    Symbols symbols;
    std::int64_t run = 0;  // pending homes up to and with the next one found
  };

  // Lends the cursor as a local value, which the compiler keeps in registers.
  template <class Walk>
  bool WithCursor(Walk walk) {
    Cursor at = cursor_;
    const bool goesOn = walk(at);
    cursor_ = at;
    return goesOn;
  }

  void Begin(int pass, float threshold) {
    threshold_ = threshold;
    refinedCount_ = 0;
    if (pass > 1) {
      found_.Settle();
      order_.Rebuild(found_.Before());
    }
  }

  [[nodiscard]] bool Spent(const Cursor& at) const { return at.symbols.BitsRead() >= budget_; }

  bool Ended() {
    streamEnded_ = true;
    return false;
  }

  MAROVIA_INLINE bool ReadRun(Cursor& at) {
    std::uint32_t number = 0;
    if (!at.symbols.ReadNumber(number)) return Ended();
    at.run = number;
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
    if (cursor_.run > pending) {
      cursor_.run -= pending;
      return true;
    }
    const Stretch& stretch = order_.Stretches()[index];
    if (stretch.ordered) return FindInOrder(order_.OrderOf(index));
    return WithCursor([&](Cursor& at) { return FindInTurn(at, stretch); });
  }

  MAROVIA_INLINE bool FindInTurn(Cursor& at, const Stretch& stretch) {
    for (std::size_t i = stretch.first / 64; i * 64 < stretch.last; ++i) {
      const std::uint64_t mask = HomeSet::RangeMask(i, stretch.first, stretch.last);
      if (mask == ~std::uint64_t{0} && at.run > found_.PendingInWord(i)) {
        at.run -= found_.PendingInWord(i);
      } else if (!FindAmong(at, static_cast<Home>(i * 64), ~found_.Before().Word(i) & mask)) {
        return false;
      }
    }
    return true;
  }

  bool FindInOrder(const StretchOrder& order) {
    const auto inList = [&](Cursor& at) {
      return FindInList(at, order.homes.size(), [&](std::size_t i) { return order.homes[i]; });
    };
    const auto inWithout = [&](Cursor& at) {
      return FindInList(at, 4 * order.blocksWithout.size(), [&](std::size_t i) {
        return 4 * order.blocksWithout[i / 4] + static_cast<Home>(i % 4);
      });
    };
    return WithCursor(inList) && FindInBlocks(order.blocksOfFound) &&
           FindInBlocks(order.blocksWithFound) && WithCursor(inWithout);
  }

  bool FindInBlocks(std::span<const Home> blocks) {
    return WithCursor([&](Cursor& at) {
      for (const Home block : blocks) {
        std::uint64_t pending = ~found_.Before().Block(block) & 0xF;
        while (at.run <= kBlockCounts[pending]) {
          const Home place = kBlockPlaces[pending][static_cast<std::size_t>(at.run - 1)];
          if (!Take(at, 4 * block + place)) return false;
          pending &= 0xEU << place;
        }
        at.run -= kBlockCounts[pending];
      }
      return true;
    });
  }

  // Homes that are all pending: homeAt(0) to homeAt(count - 1).
  template <class HomeAt>
  MAROVIA_INLINE bool FindInList(Cursor& at, std::size_t count, HomeAt homeAt) {
    auto left = static_cast<std::int64_t>(count);
    while (at.run <= left) {
      left -= at.run;
      if (!Take(at, homeAt(count - static_cast<std::size_t>(left) - 1))) return false;
    }
    at.run -= left;
    return true;
  }

  // The homes from `base` on that the bits of `pending` mark, the lowest first.
  MAROVIA_INLINE bool FindAmong(Cursor& at, Home base, std::uint64_t pending) {
    while (true) {
      const int count = CountBits(pending);
      if (at.run > count) {
        at.run -= count;
        return true;
      }
      const int place = PlaceOfBit(pending, static_cast<int>(at.run));
      if (!Take(at, base + static_cast<Home>(place))) return false;
      pending &= ~std::uint64_t{1} << place;
    }
  }

  MAROVIA_INLINE bool Take(Cursor& at, Home home) {
    bool negative = false;
    if (!at.symbols.ReadSign(negative)) return Ended();
    values_[home] = negative ? -threshold_ : threshold_;
    found_.Take(home);
    return !Spent(at) && ReadRun(at);
  }

  bool RefinementPass() {
    const HomeList found = found_.ListBefore(order_);
    return WithCursor([&](Cursor& at) {
      for (const Home home : found.Homes()) {
        bool moves = false;
        if (!at.symbols.ReadRefinement(moves)) return Ended();
        ++refinedCount_;
        float& value = values_[home];
        value += std::copysign(static_cast<float>(moves) * threshold_, value);
        if (Spent(at)) return false;
      }
      return true;
    });
  }

  VisitingOrder& order_;
  std::int64_t budget_;

  FoundState found_;
  std::vector<float> values_;
  std::int64_t refinedCount_ = 0;  // in this pass
  float threshold_ = 0;
  Cursor cursor_;
  bool streamEnded_ = false;
};

}  // namespace marovia
