#include "tests/campaigns/failing_new.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace marovia::test {
namespace {

struct State {
  std::int64_t untilFailure = 0;  // 0: none to come
  Shortage shortage = Shortage::kOnce;
  bool struck = false;
  std::int64_t blocks = 0;
};

thread_local constinit State state;

bool MustFail() {
  if (state.struck && state.shortage == Shortage::kToStay) return true;
  if (state.untilFailure == 0 || --state.untilFailure > 0) return false;
  state.struck = true;
  return true;
}

void* Allocate(std::size_t size, std::size_t alignment) noexcept {
  if (MustFail()) return nullptr;
  const std::size_t whole = (size + alignment - 1) / alignment * alignment;
  void* block = std::aligned_alloc(alignment, whole == 0 ? alignment : whole);
  if (block != nullptr) ++state.blocks;
  return block;
}

void* AllocateOrThrow(std::size_t size, std::size_t alignment) {
  void* block = Allocate(size, alignment);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void Free(void* block) noexcept {
  if (block != nullptr) --state.blocks;
  std::free(block);
}

}  // namespace

MemoryShortage::MemoryShortage(std::int64_t nth, Shortage shortage) {
  state = {nth, shortage, false, state.blocks};
}

MemoryShortage::~MemoryShortage() {
  state = {0, Shortage::kOnce, false, state.blocks};
}

bool MemoryShortage::Struck() const {
  return state.struck;
}

std::int64_t BlocksInUse() {
  return state.blocks;
}

}  // namespace marovia::test

namespace {

constexpr std::size_t kUsual = __STDCPP_DEFAULT_NEW_ALIGNMENT__;

std::size_t Number(std::align_val_t alignment) {
  return static_cast<std::size_t>(alignment);
}

}  // namespace

// Every form: a sanitizer's own would otherwise take the place of some.
using marovia::test::Allocate;
using marovia::test::AllocateOrThrow;
using marovia::test::Free;

void* operator new(std::size_t n) {
  return AllocateOrThrow(n, kUsual);
}
void* operator new[](std::size_t n) {
  return AllocateOrThrow(n, kUsual);
}
void* operator new(std::size_t n, std::align_val_t a) {
  return AllocateOrThrow(n, Number(a));
}
void* operator new[](std::size_t n, std::align_val_t a) {
  return AllocateOrThrow(n, Number(a));
}
void* operator new(std::size_t n, const std::nothrow_t&) noexcept {
  return Allocate(n, kUsual);
}
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept {
  return Allocate(n, kUsual);
}
void operator delete(void* block) noexcept {
  Free(block);
}
void operator delete[](void* block) noexcept {
  Free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  Free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  Free(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
  Free(block);
}
void operator delete[](void* block, std::align_val_t) noexcept {
  Free(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
  Free(block);
}
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept {
  Free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
  Free(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
  Free(block);
}
