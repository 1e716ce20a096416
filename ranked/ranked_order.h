// The order that follows what is found: the most probable coefficient is visited next.
//
// A home's score counts what was found around it. A pass visits the pending homes of the highest
// score first, those of one score in the order in which they reached it; what it finds raises
// others at once. Both directions know what was found so far, and so walk the same way.
#pragma once

#include <cstdint>
#include <vector>

#include "ranked/resting_order.h"
#include "ranked/waiting_queues.h"

namespace marovia {

class RankedOrder {
 public:
  explicit RankedOrder(const RestingOrder& resting);

  // Not found yet.
  [[nodiscard]] std::int64_t Pending() const { return pendingCount_; }

  // One pass over the pending homes. The finder is asked
  //
  //   finder.Finds(home)           whether a home, visited now, is found
  //   finder.FirstOf(word, homes)  the same of some homes of a word of a set at once: the place of
  //                                the first that is found, or 64; what lies behind it is not
  //                                visited
  //   finder.Take(home)            what to do with one; false where none is left to find
  template <class Finder>
  void Visit(Finder& finder);

 private:
  // Of a home; the score, which never exceeds 15, is in the lowest bits.
  static constexpr unsigned kScore = 15;
  static constexpr unsigned kFound = 16;
  static constexpr unsigned kVisited = 32;  // in this pass

  void FillQueues();
  template <class Finder>
  bool VisitQueue(unsigned score, Finder& finder);
  template <class Finder>
  bool VisitUnraised(Finder& finder);
  template <class Finder>
  bool Take(Home home, Finder& finder);
  MAROVIA_INLINE void Raise(Home home, unsigned amount);

  const RestingOrder& resting_;
  std::vector<std::uint8_t> states_;
  HomeSet pending_;
  HomeSet raised_;  // with a score above 0
  WaitingQueues queues_;
  Home unraisedFrom_ = 0;  // the homes before it that have no score are visited
  std::int64_t pendingCount_;
};

template <class Finder>
void RankedOrder::Visit(Finder& finder) {
  FillQueues();
  bool goesOn = true;
  while (goesOn) {
    const unsigned score = queues_.Highest();
    goesOn = score > 0 ? VisitQueue(score, finder) : VisitUnraised(finder);
  }
}

template <class Finder>
bool RankedOrder::VisitQueue(unsigned score, Finder& finder) {
  Home found = 0;
  bool any = false;
  queues_.TakeUntil(score, [&](Home home) MAROVIA_INLINE_LAMBDA {
    // A home that rose, was visited or found has another state.
    if (states_[home] != score) return false;
    states_[home] = static_cast<std::uint8_t>(score | kVisited);
    if (!finder.Finds(home)) return false;
    found = home;
    return any = true;
  });
  return !any || Take(found, finder);
}

// The homes without a score wait in the order of their numbers, so they need no queue.
template <class Finder>
bool RankedOrder::VisitUnraised(Finder& finder) {
  std::uint64_t behind = ~std::uint64_t{0} << (unraisedFrom_ % 64);
  for (std::size_t i = unraisedFrom_ / 64; i < pending_.WordCount(); ++i) {
    const std::uint64_t homes = pending_.Word(i) & ~raised_.Word(i) & behind;
    behind = ~std::uint64_t{0};
    if (homes == 0) continue;
    const int place = finder.FirstOf(i, homes);
    if (place == 64) continue;
    const Home home = static_cast<Home>(i * 64) + static_cast<Home>(place);
    unraisedFrom_ = home + 1;
    return Take(home, finder);
  }
  return false;
}

template <class Finder>
bool RankedOrder::Take(Home home, Finder& finder) {
  states_[home] |= kFound;
  pending_.Remove(home);
  --pendingCount_;
  const bool goesOn = finder.Take(home);
  resting_.ForKin(
      home, [this](Home other, unsigned amount) MAROVIA_INLINE_LAMBDA { Raise(other, amount); });
  queues_.Tidy([this](unsigned score, Home other) { return states_[other] == score; });
  return goesOn;
}

MAROVIA_INLINE void RankedOrder::Raise(Home home, unsigned amount) {
  const unsigned old = states_[home];
  const bool passed = (old & kScore) == 0 && home < unraisedFrom_;
  const unsigned now = (old + amount) | (passed ? kVisited : 0);
  states_[home] = static_cast<std::uint8_t>(now);
  raised_.Insert(home);
  queues_.Join(now & kScore, home, now <= kScore);
}

}  // namespace marovia
