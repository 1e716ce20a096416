// The order that follows what is found: the most probable coefficient is visited next.
//
// A home's score counts what was found around it. A pass visits the pending homes of the highest
// score first, those of one score in the order in which they reached it; what it finds raises
// others at once. Both directions know what was found so far, and so walk the same way.
#pragma once

#include <bit>
#include <cstdint>
#include <vector>

#include "passes/resting_order.h"
#include "passes/waiting_queues.h"

namespace marovia {

class RankedOrder {
 public:
  explicit RankedOrder(const RestingOrder& resting);

  // Not found yet.
  [[nodiscard]] std::int64_t Pending() const { return pendingCount_; }

  // The first part of a pass. A search is a small value that says what it finds, in either
  // direction:
  //
  //   search.Finds(home, 1)       whether a home, visited now, is found; with 0 it is not visited
  //   search.FirstOf(word, homes) the same of some homes of one word of a set at once: the place of
  //                               the first that is found, or 64; what lies behind it is not
  //                               visited
  //
  // onFound(home) is called for each that is found, and returns false where it was the last.
  template <class Search, class OnFound>
  void Visit(Search& search, OnFound onFound);

 private:
  // The state of a home: its score, which never exceeds 15, and one of these. A pending home that
  // waits has its score alone.
  static constexpr unsigned kScore = 15;
  static constexpr unsigned kFound = 16;
  static constexpr unsigned kVisited = 32;  // in this pass
  static constexpr Home kNone = ~Home{0};

  void FillQueues();
  template <class Search, class OnFound>
  bool VisitQueue(unsigned score, Search& search, OnFound onFound);
  template <class Search, class OnFound>
  bool VisitUnraised(Search& search, OnFound onFound);
  template <class OnFound>
  bool Take(Home home, OnFound onFound);
  void RaiseKin(Home home);

  const RestingOrder& resting_;
  std::vector<std::uint8_t> states_;
  HomeSet pending_;
  HomeSet raised_;  // with a score above 0
  WaitingQueues queues_;
  Home unraisedFrom_ = 0;  // the homes before it that have no score are visited
  std::int64_t pendingCount_;
};

inline RankedOrder::RankedOrder(const RestingOrder& resting)
    : resting_(resting),
      states_(resting.HomeCount()),
      pending_(resting.HomeCount()),
      raised_(resting.HomeCount()),
      queues_(resting.HomeCount()),
      pendingCount_(static_cast<std::int64_t>(resting.HomeCount())) {
  for (std::size_t i = 0; i < pending_.WordCount(); ++i) {
    pending_.Word(i) = HomeSet::RangeMask(i, 0, static_cast<Home>(resting.HomeCount()));
  }
}

inline void RankedOrder::FillQueues() {
  queues_.Clear();
  unraisedFrom_ = 0;
  for (std::size_t i = 0; i < pending_.WordCount(); ++i) {
    std::uint64_t waiting = pending_.Word(i) & raised_.Word(i);
    for (; waiting != 0; waiting &= waiting - 1) {
      const Home home = static_cast<Home>(i * 64) + static_cast<Home>(std::countr_zero(waiting));
      const unsigned score = states_[home] & kScore;
      states_[home] = static_cast<std::uint8_t>(score);
      queues_.Filled(queues_.Join(score, home));
    }
  }
}

template <class Search, class OnFound>
void RankedOrder::Visit(Search& search, OnFound onFound) {
  FillQueues();
  bool goesOn = true;
  while (goesOn) {
    const unsigned score = queues_.Highest();
    goesOn = score > 0 ? VisitQueue(score, search, onFound) : VisitUnraised(search, onFound);
  }
}

template <class Search, class OnFound>
bool RankedOrder::VisitQueue(unsigned score, Search& search, OnFound onFound) {
  std::uint8_t* const states = states_.data();
  Search local = search;
  Home found = kNone;
  queues_.TakeUntil(score, [&](Home home) MAROVIA_INLINE_LAMBDA {
    // A home that rose, was visited or found has another state.
    const unsigned waits = states[home] == score ? 1 : 0;
    states[home] = static_cast<std::uint8_t>(states[home] | waits * kVisited);
    if (!local.Finds(home, waits)) return false;
    found = home;
    return true;
  });
  search = local;
  return found == kNone || Take(found, onFound);
}

// The homes without a score wait in the order of their numbers, so they need no queue.
template <class Search, class OnFound>
bool RankedOrder::VisitUnraised(Search& search, OnFound onFound) {
  std::uint64_t behind = ~std::uint64_t{0} << (unraisedFrom_ % 64);
  for (std::size_t i = unraisedFrom_ / 64; i < pending_.WordCount(); ++i) {
    const std::uint64_t homes = pending_.Word(i) & ~raised_.Word(i) & behind;
    behind = ~std::uint64_t{0};
    if (homes == 0) continue;
    const int place = search.FirstOf(i, homes);
    if (place == 64) continue;
    const Home home = static_cast<Home>(i * 64) + static_cast<Home>(place);
    unraisedFrom_ = home + 1;
    return Take(home, onFound);
  }
  return false;
}

template <class OnFound>
bool RankedOrder::Take(Home home, OnFound onFound) {
  states_[home] |= kFound;
  pending_.Remove(home);
  --pendingCount_;
  // The states of the children lie far off: they come while the home itself is coded.
  const std::size_t children = 4 * std::size_t{home};
  if (children < states_.size()) __builtin_prefetch(&states_[children], 1);
  const bool goesOn = onFound(home);
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
    // Homes before unraisedFrom were visited without a score: their state is 0 still.
    const unsigned passed = ((old - 1) & (other - unraisedFrom)) >> 31;
    const unsigned now = (old + amount) | passed * kVisited;
    states[other] = static_cast<std::uint8_t>(now);
    raised[other / 64] |= std::uint64_t{1} << (other % 64);
    filled |= queues_.Join(now, other);
  });
  queues_.Filled(filled);
}

}  // namespace marovia
