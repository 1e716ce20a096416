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
  //   finder.search.Finds(home, 1)  whether a home, visited now, is found; never if it is 0
  //   finder.search.FirstOf(word, homes)
  //                                 the same of some homes of a word of a set at once: the place of
  //                                 the first that is found, or 64; what lies behind it is not
  //                                 visited
  //   finder.Take(home)             what to do with one; false where none is left to find
  template <class Finder>
  void Visit(Finder& finder);

 private:
  // Of a home; the score, which never exceeds 15, is in the lowest bits.
  static constexpr unsigned kScore = 15;
  static constexpr unsigned kFound = 16;
  static constexpr unsigned kVisited = 32;  // in this pass
  static constexpr Home kNone = ~Home{0};

  void FillQueues();
  template <class Finder>
  bool VisitQueue(unsigned score, Finder& finder);
  template <class Finder>
  bool VisitUnraised(Finder& finder);
  template <class Finder>
  bool Take(Home home, Finder& finder);
  void RaiseKin(Home home);

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
  std::uint8_t* const states = states_.data();
  auto search = finder.search;
  Home found = kNone;
  queues_.TakeUntil(score, [&](Home home) MAROVIA_INLINE_LAMBDA {
    // A home that rose, was visited or found has another state.
    const unsigned waits = states[home] == score ? 1 : 0;
    states[home] = static_cast<std::uint8_t>(states[home] | waits * kVisited);
    if (!search.Finds(home, waits)) return false;
    found = home;
    return true;
  });
  finder.search = search;
  return found == kNone || Take(found, finder);
}

// The homes without a score wait in the order of their numbers, so they need no queue.
template <class Finder>
bool RankedOrder::VisitUnraised(Finder& finder) {
  std::uint64_t behind = ~std::uint64_t{0} << (unraisedFrom_ % 64);
  for (std::size_t i = unraisedFrom_ / 64; i < pending_.WordCount(); ++i) {
    const std::uint64_t homes = pending_.Word(i) & ~raised_.Word(i) & behind;
    behind = ~std::uint64_t{0};
    if (homes == 0) continue;
    const int place = finder.search.FirstOf(i, homes);
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
  // The states of the children lie far off: they come while the home itself is coded.
  const std::size_t children = 4 * std::size_t{home};
  if (children < states_.size()) __builtin_prefetch(&states_[children], 1);
  const bool goesOn = finder.Take(home);
  RaiseKin(home);
  queues_.Tidy([this](unsigned score, Home other) { return states_[other] == score; });
  return goesOn;
}

// Whether a home still waits can't be foretold, so there is no branch on it.
inline void RankedOrder::RaiseKin(Home home) {
  std::uint8_t* const states = states_.data();
  std::uint64_t* const raised = &raised_.Word(0);
  const Home unraisedFrom = unraisedFrom_;
  std::uint64_t filled = 0;
  resting_.ForKin(home, [&](Home other, unsigned amount) MAROVIA_INLINE_LAMBDA {
    const unsigned old = states[other];
    const unsigned passed = ((old - 1) & (other - unraisedFrom)) >> 31;
    const unsigned now = (old + amount) | passed * kVisited;
    states[other] = static_cast<std::uint8_t>(now);
    raised[other / 64] |= std::uint64_t{1} << (other % 64);
    filled |= queues_.Join(now, other);
  });
  queues_.Filled(filled);
}

}  // namespace marovia
