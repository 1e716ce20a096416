// Work shared among threads, for as long as one call.
//
// Standard threads alone: what is shared are a few loops of a millisecond or more, all parts of a
// loop take equally long, and nothing is left over between calls that a pool would keep.
#pragma once

#include <cstddef>
#include <functional>

namespace marovia {

// One of `count` equal shares of something, by its index.
struct Share {
  int index = 0;
  int count = 1;

  // The share of 0 to size - 1, in multiples of `unit`.
  struct Range {
    std::size_t first;
    std::size_t last;
  };
  [[nodiscard]] Range Of(std::size_t size, std::size_t unit = 1) const;
};

// As many threads as a caller allows, 0 being all that the machine has, but none for less work than
// a thread's start is worth.
int UsefulThreads(int threads, std::size_t pixels);

// Calls work(share) for all shares at once, one in this thread; returns when all are done. Where
// threads are not to be had, shares follow one another. Of what they throw the first is thrown.
void RunShares(int count, const std::function<void(Share)>& work);

}  // namespace marovia
