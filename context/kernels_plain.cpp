#include "context/kernels_of.h"

namespace marovia {

const ContextKernels& PlainKernels() {
  static constexpr ContextKernels kKernels = KernelsOf<PlainLanes>::Table();
  return kKernels;
}

const ContextKernels& BestKernels() {
  const ContextKernels* wide = WideKernels();
  return wide != nullptr ? *wide : PlainKernels();
}

}  // namespace marovia
