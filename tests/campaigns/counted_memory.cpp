#include "tests/campaigns/counted_memory.h"

#include <algorithm>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

std::int64_t held = 0;
std::int64_t mostHeld = 0;

void* Counted(void* memory) {
  if (memory == nullptr) throw std::bad_alloc();
  held += static_cast<std::int64_t>(malloc_usable_size(memory));
  mostHeld = std::max(mostHeld, held);
  return memory;
}

void Release(void* memory) {
  held -= static_cast<std::int64_t>(malloc_usable_size(memory));
  std::free(memory);
}

}  // namespace

// The others of the standard library come down to these.
void* operator new(std::size_t size) {
  return Counted(std::malloc(size));
}
void operator delete(void* memory) noexcept {
  Release(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  Release(memory);
}

namespace marovia::test {

std::int64_t HeldBytes() {
  return held;
}
std::int64_t MostHeldBytes() {
  return mostHeld;
}
void CountAnew() {
  mostHeld = held;
}

}  // namespace marovia::test
