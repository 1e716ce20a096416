#include "passes/waiting_queues.h"

namespace marovia {

WaitingQueues::WaitingQueues(std::size_t homes) : mostPages_(homes * 3 / 2 / kPageHomes + 64) {
  for (unsigned score = 0; score < kScores; ++score) Begin(score, NewPage());
  for (unsigned state = kScores; state < kStates; ++state) AddPage(state);
}

void WaitingQueues::Clear() {
  for (unsigned score = 0; score < kScores; ++score) {
    Head& head = heads_[score];
    while (head.first != head.last) DropPage(head);
    Begin(score, head.first);
  }
  filled_ = 0;
}

void WaitingQueues::Begin(unsigned score, Page* page) {
  Home* homes = page->homes.data();
  heads_[score] = {homes, page, page};
  tails_[score] = {homes, homes + kPageHomes};
}

void WaitingQueues::AddPage(unsigned state) {
  Page* page = &closed_;
  if (state < kScores) {
    page = NewPage();
    heads_[state].last->next = page;
    heads_[state].last = page;
  }
  tails_[state] = {page->homes.data(), page->homes.data() + kPageHomes};
}

// The first page has been read.
void WaitingQueues::DropPage(Head& head) {
  Page* page = head.first;
  head.first = page->next;
  head.from = head.first->homes.data();
  page->next = free_;
  free_ = page;
  --pagesInUse_;
}

WaitingQueues::Page* WaitingQueues::NewPage() {
  ++pagesInUse_;
  if (free_ == nullptr) return pages_.emplace_back(std::make_unique_for_overwrite<Page>()).get();
  Page* page = free_;
  free_ = page->next;
  return page;
}

}  // namespace marovia
