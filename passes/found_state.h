// What is found, before a pass and in it.
#pragma once

#include <algorithm>
#include <span>
#include <vector>

#include "base/bits.h"
#include "passes/homes.h"
#include "passes/visiting_order.h"

namespace marovia {

class FoundState {
 public:
  // So many words are a group.
  static constexpr std::size_t kGroup = 64;

  explicit FoundState(const VisitingOrder& order);

  // In the passes before this one. Nothing changes here during a pass.
  [[nodiscard]] const HomeSet& Before() const { return before_; }
  // In this pass.
  [[nodiscard]] const HomeSet& Now() const { return now_; }
  [[nodiscard]] std::int64_t Count() const { return count_; }

  // The homes not found before this pass: of one word of 64 homes, of one group of words, of one
  // stretch, of all.
  [[nodiscard]] int PendingInWord(std::size_t word) const { return pendingInWord_[word]; }
  [[nodiscard]] int PendingInGroup(std::size_t group) const { return pendingInGroup_[group]; }
  [[nodiscard]] std::int64_t PendingInStretch(std::size_t stretch) const {
    return pendingInStretch_[stretch];
  }
  [[nodiscard]] std::int64_t Pending() const;

  void Take(Home home) {
    now_.Insert(home);
    wordsNow_.Insert(home / 64);
    ++count_;
  }

  // The pass is over: what it found counts as found before.
  void Settle();

  // Calls visit(homes) with the homes found before this pass, in its order of visiting, some
  // thousand at a time in `list`, so that they stay in the cache; until it returns false, or to the
  // end.
  template <class Visit>
  bool ForFoundBefore(VisitingOrder& order, HomeList& list, Visit visit) const;
  // Fills a list with those not found before this pass in the blocks of a stretch that may hold
  // others.
  void ListPending(const StretchOrder& order, HomeList& list) const;

 private:
  template <class Visit>
  bool ForFoundInTurn(const Stretch& stretch, HomeList& list, Visit visit) const;
  void ListGroup(std::size_t group, const Stretch& stretch, HomeList& list) const;
  void ListBlocks(std::span<const Home> blocks, HomeList& list) const;

  std::span<const Stretch> stretches_;
  HomeSet before_;
  HomeSet now_;
  // The numbers of the words of both that are not empty.
  HomeSet wordsBefore_;
  HomeSet wordsNow_;
  std::vector<std::uint8_t> pendingInWord_;
  std::vector<int> pendingInGroup_;
  std::vector<std::int64_t> pendingInStretch_;
  std::int64_t count_ = 0;
};

template <class Visit>
bool FoundState::ForFoundBefore(VisitingOrder& order, HomeList& list, Visit visit) const {
  for (std::size_t i = 0; i < stretches_.size(); ++i) {
    if (pendingInStretch_[i] == stretches_[i].Size()) continue;
    if (!stretches_[i].ordered) {
      if (!ForFoundInTurn(stretches_[i], list, visit)) return false;
      continue;
    }
    const StretchOrder made = order.OrderOf(i);
    for (std::span<const Home> blocks : {made.blocksOfFound, made.blocksWithFound}) {
      while (!blocks.empty()) {
        const std::size_t count = std::min(blocks.size(), 16 * kGroup);
        ListBlocks(blocks.first(count), list);
        if (!visit(list.Homes())) return false;
        blocks = blocks.subspan(count);
      }
    }
  }
  return true;
}

template <class Visit>
bool FoundState::ForFoundInTurn(const Stretch& stretch, HomeList& list, Visit visit) const {
  const std::size_t end = (std::size_t{stretch.last} + 64 * kGroup - 1) / (64 * kGroup);
  for (std::size_t group = stretch.first / (64 * kGroup); group < end; ++group) {
    if (wordsBefore_.Word(group) == 0) continue;
    ListGroup(group, stretch, list);
    if (!visit(list.Homes())) return false;
  }
  return true;
}

}  // namespace marovia
