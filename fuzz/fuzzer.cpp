// The entry of a fuzzer, built once for every target.
#include <cstddef>
#include <cstdint>

#include "fuzz/targets.h"

// libFuzzer looks for this name.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  for (const auto& target : marovia::fuzz::Targets()) {
    if (target.name == MAROVIA_FUZZ_TARGET) target.run({data, size});
  }
  return 0;
}
