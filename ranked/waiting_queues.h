// The homes that wait to be visited, first in first out, a queue for each score above 0.
#pragma once

#include <array>
#include <bit>
#include <memory>
#include <vector>

#include "base/bits.h"
#include "coding/home_set.h"

namespace marovia {

// Queues are made of pages, which go from one to another. An entry is not taken out where its home
// rises or is visited: who takes it tells that it is stale.
class WaitingQueues {
 public:
  static constexpr unsigned kScores = 16;

  // At most `homes` entries are not stale at any time.
  explicit WaitingQueues(std::size_t homes);

  // Without a branch on `waits`, which can't be foretold.
  MAROVIA_INLINE void Join(unsigned score, Home home, bool waits) {
    Queue& queue = queues_[score];
    *queue.to = home;
    queue.to += waits ? 1 : 0;
    filled_ |= (waits ? 1U : 0U) << score;
    if (queue.to == queue.end) [[unlikely]]
      AddPage(queue);
  }

  // The highest score with entries, 0 where there are none.
  [[nodiscard]] unsigned Highest() const {
    return static_cast<unsigned>(std::bit_width(filled_ | 1U)) - 1;
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
  static constexpr std::size_t kPageHomes = 254;
  struct Page {
    Page* next = nullptr;
    std::array<Home, kPageHomes> homes;
  };
  // From `from` in the first page to `to` in the last, which has room for one more.
  struct Queue {
    Home* to;
    Home* end;  // of the last page
    const Home* from;
    Page* first;
    Page* last;
  };

  void AddPage(Queue& queue);
  void DropPage(Queue& queue);
  Page* NewPage();
  static void Begin(Queue& queue, Page* page);
  template <class Fresh>
  void TidyAll(Fresh fresh);

  std::array<Queue, kScores> queues_{};
  unsigned filled_ = 0;  // a bit a score
  std::vector<std::unique_ptr<Page>> pages_;
  Page* free_ = nullptr;
  std::size_t pagesInUse_ = 0;
  std::size_t mostPages_;
};

template <class Visit>
MAROVIA_INLINE void WaitingQueues::TakeUntil(unsigned score, Visit visit) {
  Queue& queue = queues_[score];
  while (true) {
    const bool whole = queue.first != queue.last;
    const Home* const end = whole ? queue.first->homes.data() + kPageHomes : queue.to;
    for (const Home* from = queue.from; from != end;) {
      if (!visit(*from++)) continue;
      queue.from = from;
      if (from == end && whole) DropPage(queue);
      return;
    }
    if (!whole) break;
    DropPage(queue);
  }
  Begin(queue, queue.first);
  filled_ &= ~(1U << score);
}

template <class Fresh>
void WaitingQueues::TidyAll(Fresh fresh) {
  for (unsigned score = 1; score < kScores; ++score) {
    Queue& queue = queues_[score];
    const Home* const end = queue.to;
    while (queue.from != end) {
      const Home home = *queue.from++;
      if (queue.from == queue.first->homes.data() + kPageHomes) DropPage(queue);
      Join(score, home, fresh(score, home));
    }
  }
}

}  // namespace marovia
