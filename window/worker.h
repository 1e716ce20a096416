// A thread that does what was wished last.
#pragma once

#include <array>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "explore/explorer.h"

namespace marovia {

class Worker {
 public:
  // The first goes first. A wish takes the place of one that waits in its lane, and ends what is
  // being done in it or in a later one.
  enum Lane { kOpen, kLook, kWhole, kCurve, kLanes };

  // Ends early where the watch says so, and then returns false. It is taken up again later, unless
  // another took its place. Throws nothing.
  using Work = std::function<bool(const Watch& watch)>;

  Worker() = default;
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;
  ~Worker();

  void Wish(Lane lane, Work work);
  // Forgets all wishes.
  void Drop();

 private:
  void Run();

  std::mutex mutex_;
  std::condition_variable wake_;
  std::array<Work, kLanes> waiting_;
  Lane running_ = kLanes;
  bool dropped_ = false;  // what runs is not to be taken up again
  bool closing_ = false;
  std::atomic<bool> ended_ = false;
  std::thread thread_{[this] { Run(); }};
};

}  // namespace marovia
