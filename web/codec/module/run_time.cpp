// What the C++ library here lacks, or has only with files and a terminal behind it: a throw, memory
// that has run out and an abort tell the host, and end there.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <new>
#include <stdexcept>
#include <string_view>
#include <typeinfo>

#include "marovia/error.h"
#include "marovia/marovia.h"

#include "web/codec/module/host.h"

namespace {

using namespace marovia;  // NOLINT(google-build-using-namespace): the names below are C's

[[noreturn]] void Tell(int status, std::string_view message) {
  HostFail(status, message.data(), message.size());
}

int StatusOf(Errc code) {
  static_assert(static_cast<int>(Errc::kOverflow) + 1 == MAROVIA_OVERFLOW &&
                static_cast<int>(Errc::kIo) + 1 == MAROVIA_IO);
  return static_cast<int>(code) + 1;
}

[[noreturn]] void TellNoMemory() {
  Tell(MAROVIA_NO_MEMORY, "Out of memory.");
}

void* Allocated(std::size_t size) {
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) TellNoMemory();
  return memory;
}

}  // namespace

void* operator new(std::size_t size) {
  return Allocated(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  const auto unit = static_cast<std::size_t>(alignment);
  void* memory = std::aligned_alloc(unit, (size + unit - 1) / unit * unit);
  if (memory == nullptr) TellNoMemory();
  return memory;
}
void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept {
  std::free(memory);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

// The library says so of its own accord where an assertion of it fails, or a virtual call has no
// body.
void std::__libcpp_verbose_abort(const char* format, ...) {
  Tell(MAROVIA_INTERNAL, format);
}

extern "C" {

// The streams of the C library, which is linked for the numbers in texts, end here.
int __stdio_close(void* /*stream*/) {
  return 0;
}
std::size_t __stdio_write(void* /*stream*/, const void* /*bytes*/, std::size_t size) {
  return size;
}
std::int64_t __stdio_seek(void* /*stream*/, std::int64_t /*place*/, int /*whence*/) {
  return -1;
}

void abort_message(const char* format, ...) {
  Tell(MAROVIA_INTERNAL, format);
}

void* __cxa_allocate_exception(std::size_t size) noexcept {
  return Allocated(size);
}

[[noreturn]] void __cxa_throw(void* thrown, std::type_info* type, void (* /*destroy*/)(void*)) {
  if (*type == typeid(Error)) {
    const auto& failure = *static_cast<const Error*>(thrown);
    Tell(StatusOf(failure.Code()), failure.what());
  }
  // What has more bytes than an address can tell.
  if (*type == typeid(std::length_error)) TellNoMemory();
  Tell(MAROVIA_INTERNAL, type->name());
}

void abort() {
  Tell(MAROVIA_INTERNAL, "The module gave up.");
}
}
