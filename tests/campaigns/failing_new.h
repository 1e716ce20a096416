// An operator new that runs out of memory when it is told to. Linking failing_new.cpp puts it in
// place of the library's.
#pragma once

#include <cstdint>

namespace marovia::test {

enum class Shortage {
  kOnce,    // the next allocations succeed again, as where one large array did not fit
  kToStay,  // nothing more is to be had
};

// While one lives, the allocation number `nth` of this thread fails; 1 is the next.
class MemoryShortage {
 public:
  MemoryShortage(std::int64_t nth, Shortage shortage);
  MemoryShortage(const MemoryShortage&) = delete;
  MemoryShortage& operator=(const MemoryShortage&) = delete;
  ~MemoryShortage();

  [[nodiscard]] bool Struck() const;
};

// Blocks that were allocated and not yet freed.
std::int64_t BlocksInUse();

}  // namespace marovia::test
