// The passes of every compressor.
//
// A pass visits the homes that are not yet found, the pending ones, and sends for each that it
// finds how many pending ones it skipped and the sign; then an end of pass; then one bit for each
// home found in an earlier pass. What a pass finds is known beforehand (BitPlanes), so a run is the
// number of pending homes between two of them: nothing is visited one by one.
#pragma once

#include <bit>

#include "coding/bit_planes.h"
#include "coding/found_state.h"
#include "coding/pass_plan.h"
#include "coding/visiting_order.h"

namespace marovia {

template <class Symbols>
class PassEncoder {
 public:
  PassEncoder(const BitPlanes& planes, VisitingOrder& order, Symbols& symbols,
              const EncoderPlan& plan)
      : planes_(planes),
        order_(order),
        symbols_(symbols),
        plan_(plan),
        found_(order),
        candidates_(planes.HomeCount()) {}

  // Pass number `pass`, from 1 without a gap. False where the budget ended it.
  bool Run(int pass) {
    Begin(pass);
    return SignificancePass() && EndPass() && RefinementPass();
  }

  [[nodiscard]] std::int64_t FoundCount() const { return found_.Count(); }

 private:
  void Begin(int pass) {
    pass_ = pass;
    run_ = 1;
    if (pass > 1) {
      found_.Settle();
      order_.Rebuild(found_.Before());
    }
    planes_.FoundIn(pass, candidates_);
    if (regionOnly_) candidates_.IntersectWith(*plan_.region);
    SwitchToRegionIfDue();
  }

  void SwitchToRegionIfDue() {
    if (regionOnly_ || plan_.region == nullptr || symbols_.BitsSent() < plan_.switchPoint) return;
    regionOnly_ = true;
    candidates_.IntersectWith(*plan_.region);
  }

  [[nodiscard]] bool Spent() const { return symbols_.BitsSpent() >= plan_.budget; }

  bool SignificancePass() {
    const bool firstIsPending = pass_ == 1 && !candidates_.Has(0);
    if (firstIsPending && plan_.testBeforeFirstSymbol && Spent()) return false;
    for (std::size_t i = 0; i < order_.Stretches().size(); ++i) {
      if (!FindIn(i)) return false;
    }
    return true;
  }

  bool FindIn(std::size_t index) {
    const Stretch& stretch = order_.Stretches()[index];
    if (!stretch.ordered) return FindInTurn(stretch);
    if (candidates_.AnyIn(stretch.first, stretch.last)) return FindInOrder(order_.OrderOf(index));
    run_ += found_.PendingInStretch(index);
    return true;
  }

  bool FindInTurn(const Stretch& stretch) {
    for (std::size_t i = stretch.first / 64; i * 64 < stretch.last; ++i) {
      const std::uint64_t mask = HomeSet::RangeMask(i, stretch.first, stretch.last);
      const std::uint64_t candidates = candidates_.Word(i) & mask;
      if (candidates == 0 && mask == ~std::uint64_t{0}) {
        run_ += found_.PendingInWord(i);
      } else if (!FindAmong(static_cast<Home>(i * 64), ~found_.Before().Word(i) & mask,
                            candidates)) {
        return false;
      }
    }
    return true;
  }

  bool FindInOrder(const StretchOrder& order) {
    for (const Home home : order.homes) {
      if (!FindAmong(home, 1, candidates_.Has(home) ? 1 : 0)) return false;
    }
    return FindInBlocks(order.blocksOfFound) && FindInBlocks(order.blocksWithFound) &&
           FindInPendingBlocks(order.blocksWithout);
  }

  bool FindInBlocks(std::span<const Home> blocks) {
    for (const Home block : blocks) {
      const std::uint64_t pending = ~found_.Before().Block(block) & 0xF;
      if (!FindAmong(4 * block, pending, candidates_.Block(block))) return false;
    }
    return true;
  }

  bool FindInPendingBlocks(std::span<const Home> blocks) {
    for (const Home block : blocks) {
      const std::uint64_t candidates = candidates_.Block(block);
      if (candidates == 0) {
        run_ += 4;
      } else if (!FindAmong(4 * block, 0xF, candidates)) {
        return false;
      }
    }
    return true;
  }

  // The homes from `base` on that the bits of `pending` mark, the lowest first.
  bool FindAmong(Home base, std::uint64_t pending, std::uint64_t candidates) {
    while (candidates != 0) {
      const std::uint64_t upTo = candidates ^ (candidates - 1);
      run_ += CountBits(pending & upTo) - 1;
      const Home home = base + static_cast<Home>(std::countr_zero(candidates));
      if (!Send(home)) return false;
      pending &= ~upTo;
      candidates &= ~upTo;
      if (regionOnly_) candidates &= RegionFrom(base);
    }
    run_ += CountBits(pending);
    return true;
  }

  // Of the 64 homes from `base` on, those in the region.
  [[nodiscard]] std::uint64_t RegionFrom(Home base) const {
    const std::size_t word = base / 64;
    const unsigned offset = base % 64;
    std::uint64_t bits = plan_.region->Word(word) >> offset;
    if (offset != 0 && word + 1 < plan_.region->WordCount()) {
      bits |= plan_.region->Word(word + 1) << (64 - offset);
    }
    return bits;
  }

  bool Send(Home home) {
    symbols_.Found(static_cast<std::uint32_t>(run_), planes_.Negative(home));
    run_ = 1;
    found_.Take(home);
    SwitchToRegionIfDue();
    return !Spent();
  }

  bool EndPass() {
    symbols_.EndOfPass(static_cast<std::uint32_t>(run_ + 1));
    return !Spent();
  }

  bool RefinementPass() {
    return ForEachFoundBefore(order_, found_, [this](Home home) {
      symbols_.Refine(planes_.Moves(home, pass_));
      return !Spent();
    });
  }

  const BitPlanes& planes_;
  VisitingOrder& order_;
  Symbols& symbols_;
  EncoderPlan plan_;

  FoundState found_;
  HomeSet candidates_;    // what this pass finds as long as the budget lasts
  std::int64_t run_ = 1;  // 1 + the pending homes since the last one found
  int pass_ = 0;
  bool regionOnly_ = false;
};

}  // namespace marovia
