#include "ranked/waiting_queues.h"

namespace marovia {

WaitingQueues::WaitingQueues(std::size_t homes) : mostPages_(2 * homes / kPageHomes + 64) {
  for (Queue& queue : queues_) Begin(queue, NewPage());
}

void WaitingQueues::Clear() {
  for (Queue& queue : queues_) {
    while (queue.first != queue.last) DropPage(queue);
    Begin(queue, queue.first);
  }
  filled_ = 0;
}

void WaitingQueues::Begin(Queue& queue, Page* page) {
  queue.first = queue.last = page;
  queue.to = page->homes.data();
  queue.from = queue.to;
  queue.end = queue.to + kPageHomes;
}

void WaitingQueues::AddPage(Queue& queue) {
  Page* page = NewPage();
  queue.last->next = page;
  queue.last = page;
  queue.to = page->homes.data();
  queue.end = queue.to + kPageHomes;
}

// The first page has been read.
void WaitingQueues::DropPage(Queue& queue) {
  Page* page = queue.first;
  queue.first = page->next;
  queue.from = queue.first->homes.data();
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
