// The homes that wait to be visited, first in first out, a queue for each score above 0.
#pragma once

#include <array>
#include <bit>
#include <memory>
#include <vector>

#include "base/bits.h"
#include "passes/homes.h"

namespace marovia {

// Queues are made of pages, which go from one to another. An entry is not taken out where its home
// rises or is visited: who takes it tells that it is stale.
class WaitingQueues {
 public:
  // A home waits if its state is below kScores: then it is its score. Those of other states join a
  // queue that nobody takes from, which costs less than to ask.
  static constexpr unsigned kScores = 16;
  static constexpr unsigned kStates = 64;

  // At most `homes` entries are not stale at any time.
  explicit WaitingQueues(std::size_t homes);

  // A home of that state joins its queue. Returns the queue's bit of what is to be given to Filled
  // before a queue is asked for.
  MAROVIA_INLINE std::uint64_t Join(unsigned state, Home home) {
    Tail& tail = tails_[state];
    *tail.to++ = home;
    if (tail.to == tail.end) [[unlikely]]
      AddPage(state);
    return std::uint64_t{1} << state;
  }
  void Filled(std::uint64_t states) { filled_ |= states & kWaiting; }

  // The highest score with entries, 0 where there are none.
  [[nodiscard]] unsigned Highest() const {
    return static_cast<unsigned>(std::bit_width(filled_ | 1)) - 1;
  }

  // Takes entries of a queue until visit(home) returns true or the queue is empty. Nothing may join
  // meanwhile.
  template <class Visit>
  MAROVIA_INLINE void TakeUntil(unsigned score, Visit visit);

  // Takes all stale entries out where there are many; fresh(score, home) tells the others.
  template <class Fresh>
  MAROVIA_INLINE void Tidy(Fresh fresh) {
    if (pagesInUse_ > mostPages_) [[unlikely]]
      TidyAll(fresh);
  }

  void Clear();

 private:
  static constexpr std::uint64_t kWaiting = (1U << kScores) - 1;
  static constexpr std::size_t kPageHomes = 254;
  struct Page {
    Page* next = nullptr;
    std::array<Home, kPageHomes> homes;
  };
  // Where the next entry goes, in the last page, which has room for one more.
  struct Tail {
    Home* to;
    Home* end;  // of the page
  };
  struct Head {
    const Home* from;  // in the first page
    Page* first;
    Page* last;
  };

  void AddPage(unsigned state);
  void DropPage(Head& head);
  Page* NewPage();
  void Begin(unsigned score, Page* page);
  template <class Fresh>
  void TidyAll(Fresh fresh);

  std::array<Tail, kStates> tails_{};
  std::array<Head, kScores> heads_{};
  std::uint64_t filled_ = 0;  // a bit a score
  std::vector<std::unique_ptr<Page>> pages_;
  Page closed_;  // for states that do not wait
  Page* free_ = nullptr;
  std::size_t pagesInUse_ = 0;
  std::size_t mostPages_;
};

template <class Visit>
MAROVIA_INLINE void WaitingQueues::TakeUntil(unsigned score, Visit visit) {
  Head& head = heads_[score];
  while (true) {
    const bool whole = head.first != head.last;
    const Home* const end = whole ? head.first->homes.data() + kPageHomes : tails_[score].to;
    for (const Home* from = head.from; from != end;) {
      if (!visit(*from++)) continue;
      head.from = from;
      if (from == end && whole) DropPage(head);
      return;
    }
    if (!whole) break;
    DropPage(head);
  }
  Begin(score, head.first);
  filled_ &= ~(std::uint64_t{1} << score);
}

template <class Fresh>
void WaitingQueues::TidyAll(Fresh fresh) {
  for (unsigned score = 1; score < kScores; ++score) {
    Head& head = heads_[score];
    const Home* const end = tails_[score].to;
    while (head.from != end) {
      const Home home = *head.from++;
      if (head.from == head.first->homes.data() + kPageHomes) DropPage(head);
      if (fresh(score, home)) Join(score, home);
    }
  }
}

}  // namespace marovia
