// Compiled for processors with AVX2 where the compiler can: nothing here runs before the processor
// has been asked, and all that is called from here has WideLanes in its type or is inlined.
#ifdef __AVX2__

#include "context/kernels_of.h"
#include "context/wide_lanes.h"

namespace marovia {

const ContextKernels* WideKernels() {
  static constexpr ContextKernels kKernels = KernelsOf<WideLanes>::Table();
  static const bool kThere = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
                             __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("popcnt");
  return kThere ? &kKernels : nullptr;
}

}  // namespace marovia

#else

#include "context/kernels.h"

namespace marovia {

const ContextKernels* WideKernels() {
  return nullptr;
}

}  // namespace marovia

#endif
