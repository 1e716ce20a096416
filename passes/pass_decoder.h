// The passes of every decompressor: what PassEncoder sends, taken back.
//
// A run says how many pending homes lie between two that are found, so the decoder jumps: over the
// words of a set of homes by counting their bits, over whole stretches by subtraction, to a place
// in a list of pending homes at once.
#pragma once

#include <algorithm>
#include <array>
#include <bit>

#include "passes/found_state.h"
#include "passes/run.h"
#include "passes/visiting_order.h"

namespace marovia {

template <class Symbols>
class PassDecoder {
 public:
  // Of the homes, the first `kept` get values.
  PassDecoder(VisitingOrder& order, std::size_t kept, const Symbols& symbols, std::int64_t budget)
      : order_(order),
        budget_(budget),
        found_(order),
        kept_(static_cast<Home>(kept)),
        values_(kept + 1, 0.0F),
        cursor_{symbols} {}

  // Pass number `pass`, from 1 without a gap, at its threshold. False where the budget or the
  // stream ended it.
  bool Run(int pass, float threshold) {
    Begin(pass, threshold);
    return ReadRun(cursor_) && SignificancePass() && !Spent(cursor_) && RefinementPass();
  }

  [[nodiscard]] std::int64_t FoundCount() const { return found_.Count(); }
  [[nodiscard]] std::int64_t BitsRead() const { return cursor_.symbols.BitsRead(); }
  // Whether the stream ended before the budget.
  [[nodiscard]] bool StreamEnded() const { return streamEnded_; }

  // Puts every value found into the middle of what the passes leave open. To be called once, at the
  // end.
  void PlaceInTheMiddle() {
    std::int64_t visited = 0;
    found_.ForFoundBefore(order_, refined_, [&](std::span<const Home> homes) {
      for (const Home home : homes) {
        float& value = ValueOf(home);
        value = LastRefinement(value, threshold_, visited++ < refinedCount_);
      }
      return true;
    });
    for (std::size_t i = 0; i < found_.Now().WordCount(); ++i) {
      for (std::uint64_t bits = found_.Now().Word(i); bits != 0; bits &= bits - 1) {
        float& value =
            ValueOf(static_cast<Home>(i * 64) + static_cast<Home>(std::countr_zero(bits)));
        value = LastRefinement(value, threshold_, true);
      }
    }
  }

  // Every value to its position in a grid, 0 where nothing is found, by an order of the homes that
  // are kept.
  void Scatter(const VisitingOrder& kept, std::span<float> grid, int threads) const {
    kept.Scatter(std::span(values_).first(kept_), grid, threads);
  }

 private:
  // The place in the stream.
  struct Cursor {
    Symbols symbols;
    std::int64_t run = 0;  // pending homes up to and with the next one found
  };

  MAROVIA_INLINE float& ValueOf(Home home) { return values_[std::min(home, kept_)]; }

  void Begin(int pass, float threshold) {
    threshold_ = threshold;
    steps_ = {0.0F, threshold, -0.0F, -threshold};
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
    return RunOnCopy(cursor_, [&](Cursor& at) MAROVIA_INLINE_LAMBDA {
      return stretch.ordered ? FindInOrder(at, order_.OrderOf(index)) : FindInTurn(at, stretch);
    });
  }

  MAROVIA_INLINE bool FindInTurn(Cursor& at, const Stretch& stretch) {
    constexpr std::size_t kGroup = FoundState::kGroup;
    for (std::size_t i = stretch.first / 64; i * 64 < stretch.last; ++i) {
      const bool wholeGroup = i % kGroup == 0 && (i + kGroup) * 64 <= stretch.last;
      if (wholeGroup && at.run > found_.PendingInGroup(i / kGroup)) {
        at.run -= found_.PendingInGroup(i / kGroup);
        i += kGroup - 1;
        continue;
      }
      const std::uint64_t mask = HomeSet::RangeMask(i, stretch.first, stretch.last);
      if (mask == ~std::uint64_t{0} && at.run > found_.PendingInWord(i)) {
        at.run -= found_.PendingInWord(i);
      } else if (!FindAmong(at, static_cast<Home>(i * 64), ~found_.Before().Word(i) & mask)) {
        return false;
      }
    }
    return true;
  }

  MAROVIA_INLINE bool FindInOrder(Cursor& at, const StretchOrder& order) {
    found_.ListPending(order, pending_);
    const std::span<const Home> homes = order.homes.empty() ? pending_.Homes() : order.homes;
    return FindInList(at, homes.size(), [&](std::size_t i) { return homes[i]; }) &&
           FindInList(at, 4 * order.blocksWithout.size(), [&](std::size_t i) {
             return 4 * order.blocksWithout[i / 4] + static_cast<Home>(i % 4);
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
    ValueOf(home) = steps_[negative ? 3 : 1];
    found_.Take(home);
    return !Spent(at) && ReadRun(at);
  }

  // Values lie anywhere in memory, so they change after the decisions of some thousand are read.
  bool RefinementPass() {
    return found_.ForFoundBefore(order_, refined_, [&](std::span<const Home> homes) {
      const std::size_t count = ReadRefinements(homes.size());
      for (std::size_t i = 0; i < count; ++i) {
        float& value = ValueOf(homes[i]);
        const unsigned negative = std::bit_cast<std::uint32_t>(value) >> 31;
        value += steps_[2 * negative + moves_[i]];
      }
      refinedCount_ += static_cast<std::int64_t>(count);
      return count == homes.size() && !Spent(cursor_) && !streamEnded_;
    });
  }

  // How many are read before budget or stream end.
  std::size_t ReadRefinements(std::size_t count) {
    moves_.resize(count);
    std::size_t read = 0;
    RunOnCopy(cursor_, [&](Cursor& at) MAROVIA_INLINE_LAMBDA {
      while (read < count) {
        bool moves = false;
        if (!at.symbols.ReadRefinement(moves)) return Ended();
        moves_[read++] = moves ? 1 : 0;
        if (Spent(at)) return false;
      }
      return true;
    });
    return read;
  }

  VisitingOrder& order_;
  std::int64_t budget_;

  FoundState found_;
  Home kept_;
  Buffer<float> values_;  // and one for all homes that have none
  HomeList pending_;      // in the blocks of a stretch that may hold found homes
  HomeList refined_;      // part of what this pass refines
  Buffer<std::uint8_t> moves_;
  std::int64_t refinedCount_ = 0;
  float threshold_ = 0;
  // Away from 0, by none or a threshold, for a positive value and for a negative one. A table,
  // since signs and moves cannot be foretold.
  std::array<float, 4> steps_{};
  Cursor cursor_;
  bool streamEnded_ = false;
};

}  // namespace marovia
