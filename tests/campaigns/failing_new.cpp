// Loaded before a program, runs out of memory: the allocation number MAROVIA_FAILING_NEW of its
// main fails, or with a + behind the number it and all that follow. The file that MAROVIA_STRUCK
// names is then made, so that whoever counts on knows where to stop.
#include <cstddef>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <new>
#include <unistd.h>

namespace {

constexpr std::size_t kUsual = __STDCPP_DEFAULT_NEW_ALIGNMENT__;

// Failures to come begin after so many allocations; 0 is none.
long untilFailure = 0;
bool stays = false;
bool struck = false;

using Main = int (*)(int, char**, char**);
Main programsMain = nullptr;

// What is allocated before is no concern of the program's.
int BeginToCount(int argc, char** argv, char** environment) {
  if (const char* order = std::getenv("MAROVIA_FAILING_NEW")) {
    char* end = nullptr;
    untilFailure = std::strtol(order, &end, 10);
    stays = *end == '+';
  }
  return programsMain(argc, argv, environment);
}

bool MustFail() {
  if (struck) return stays;
  if (untilFailure == 0 || --untilFailure > 0) return false;
  struck = true;
  if (const char* path = std::getenv("MAROVIA_STRUCK")) {
    ::close(::open(path, O_CREAT | O_WRONLY, 0600));
  }
  return true;
}

void* Allocate(std::size_t size, std::size_t alignment) noexcept {
  if (MustFail()) return nullptr;
  const std::size_t whole = (size + alignment - 1) / alignment * alignment;
  return std::aligned_alloc(alignment, whole == 0 ? alignment : whole);
}

void* AllocateOrThrow(std::size_t size, std::size_t alignment) {
  void* block = Allocate(size, alignment);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

}  // namespace

// Called by the system to start a program.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
extern "C" [[gnu::visibility("default")]] int __libc_start_main(Main main, int argc, char** argv,
                                                                void (*init)(), void (*fini)(),
                                                                void (*rtldFini)(),
                                                                void* stackEnd) {
  programsMain = main;
  using Start = int (*)(Main, int, char**, void (*)(), void (*)(), void (*)(), void*);
  const auto start = reinterpret_cast<Start>(::dlsym(RTLD_NEXT, "__libc_start_main"));
  return start(BeginToCount, argc, argv, init, fini, rtldFini, stackEnd);
}

// The standard library's other forms come down to these, and to std::free.
void* operator new(std::size_t n) {
  return AllocateOrThrow(n, kUsual);
}
void* operator new(std::size_t n, std::align_val_t a) {
  return AllocateOrThrow(n, static_cast<std::size_t>(a));
}
void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
  std::free(block);
}
