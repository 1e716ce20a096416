// What is found, before a pass and in it.
#pragma once

#include <bit>
#include <span>
#include <vector>

#include "base/bits.h"
#include "coding/home_set.h"
#include "coding/visiting_order.h"

namespace marovia {

class FoundState {
 public:
  explicit FoundState(const VisitingOrder& order);

  // In the passes before this one. Nothing changes here during a pass.
  [[nodiscard]] const HomeSet& Before() const { return before_; }
  // In this pass.
  [[nodiscard]] const HomeSet& Now() const { return now_; }
  [[nodiscard]] std::int64_t Count() const { return count_; }

  // The homes not found before this pass: of one word of 64 homes, of one stretch.
  [[nodiscard]] int PendingInWord(std::size_t word) const { return pendingInWord_[word]; }
  [[nodiscard]] std::int64_t PendingInStretch(std::size_t stretch) const {
    return pendingInStretch_[stretch];
  }
  [[nodiscard]] bool AnyBeforeIn(std::size_t stretch) const {
    return pendingInStretch_[stretch] < stretches_[stretch].Size();
  }

  void Take(Home home) {
    now_.Insert(home);
    ++count_;
  }

  // The pass is over: what it found counts as found before.
  void Settle();

 private:
  std::span<const Stretch> stretches_;
  HomeSet before_;
  HomeSet now_;
  std::vector<std::uint8_t> pendingInWord_;
  std::vector<std::int64_t> pendingInStretch_;
  std::int64_t count_ = 0;
};

namespace detail {

template <class Visit>
bool VisitBits(Home base, std::uint64_t bits, Visit& visit) {
  for (; bits != 0; bits &= bits - 1) {
    if (!visit(base + static_cast<Home>(std::countr_zero(bits)))) return false;
  }
  return true;
}

template <class Visit>
bool VisitBlocks(std::span<const Home> blocks, const HomeSet& found, Visit& visit) {
  for (const Home block : blocks) {
    if (!VisitBits(4 * block, found.Block(block), visit)) return false;
  }
  return true;
}

template <class Visit>
bool VisitInTurn(const Stretch& stretch, const HomeSet& found, Visit& visit) {
  for (std::size_t i = stretch.first / 64; i * 64 < stretch.last; ++i) {
    if (found.Word(i) == 0) continue;
    const std::uint64_t mask = HomeSet::RangeMask(i, stretch.first, stretch.last);
    if (!VisitBits(static_cast<Home>(i * 64), found.Word(i) & mask, visit)) return false;
  }
  return true;
}

}  // namespace detail

// Calls visit(home) for the homes found before this pass, in its order of visiting, until that
// returns false; whether it never did.
template <class Visit>
bool ForEachFoundBefore(VisitingOrder& order, const FoundState& state, Visit visit) {
  const HomeSet& found = state.Before();
  for (std::size_t i = 0; i < order.Stretches().size(); ++i) {
    if (!state.AnyBeforeIn(i)) continue;
    const Stretch& stretch = order.Stretches()[i];
    if (!stretch.ordered) {
      if (!detail::VisitInTurn(stretch, found, visit)) return false;
      continue;
    }
    const StretchOrder blocks = order.OrderOf(i);
    if (!detail::VisitBlocks(blocks.blocksOfFound, found, visit) ||
        !detail::VisitBlocks(blocks.blocksWithFound, found, visit)) {
      return false;
    }
  }
  return true;
}

}  // namespace marovia
