#include "passes/run.h"

#include <algorithm>
#include <cmath>

#include "base/checked.h"

namespace marovia {

int GetThreshold(std::span<const float> coefficients, WaveletKind wavelet) {
  const float largest = LargestMagnitude(coefficients);
  if (largest == 0) return wavelet == WaveletKind::kDaub97 ? 0 : 1;
  return std::max(0, std::ilogb(largest) + 1);
}

bool LoopTest(WaveletKind wavelet, int pass, float threshold) {
  return wavelet == WaveletKind::kDaub97 ? pass >= kMostPasses : threshold == 1.0F;
}

float LastRefinement(float value, float threshold, bool refined) {
  const float step = refined ? threshold / 2 : threshold;
  return value + std::copysign(step, value);
}

}  // namespace marovia
