#include <new>

#include "marovia/grid.h"

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace marovia {
namespace {

constexpr std::align_val_t kLargePage{std::size_t{2} << 20};
// Below this a page of 2 MB costs more to clear than it saves.
constexpr std::size_t kLarge = std::size_t{4} << 20;

// Only a wish: a system without large pages gives small ones.
void AskForLargePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t bytes) {
#ifdef __linux__
  madvise(memory, bytes, MADV_HUGEPAGE);
#endif
}

}  // namespace

void* AllocateBuffer(std::size_t bytes) {
  if (bytes < kLarge) return ::operator new(bytes);
  void* memory = ::operator new(bytes, kLargePage);
  AskForLargePages(memory, bytes);
  return memory;
}

void FreeBuffer(void* memory, std::size_t bytes) noexcept {
  if (bytes < kLarge) return ::operator delete(memory);
  ::operator delete(memory, kLargePage);
}

}  // namespace marovia
