#include "window/worker.h"

#include <algorithm>
#include <utility>

namespace marovia {

Worker::~Worker() {
  Drop();
  {
    const std::lock_guard lock(mutex_);
    closing_ = true;
  }
  wake_.notify_one();
  thread_.join();
}

void Worker::Wish(Lane lane, Work work) {
  {
    const std::lock_guard lock(mutex_);
    waiting_.at(lane) = std::move(work);
    if (running_ >= lane) ended_ = true;
  }
  wake_.notify_one();
}

void Worker::Drop() {
  const std::lock_guard lock(mutex_);
  waiting_.fill({});
  ended_ = dropped_ = true;
}

void Worker::Run() {
  std::unique_lock lock(mutex_);
  while (true) {
    const auto next = [this] { return std::ranges::find_if(waiting_, &Work::operator bool); };
    wake_.wait(lock, [&] { return closing_ || next() != waiting_.end(); });
    if (closing_) return;
    Work& place = *next();
    Work work = std::exchange(place, {});
    running_ = static_cast<Lane>(&place - waiting_.data());
    ended_ = dropped_ = false;
    lock.unlock();
    const bool done = work([this](double) { return !ended_; });
    lock.lock();
    running_ = kLanes;
    if (!done && !dropped_ && !place) place = std::move(work);
  }
}

}  // namespace marovia
