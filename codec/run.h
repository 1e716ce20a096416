// The loop over the passes, the same in both directions.
#pragma once

#include <cmath>

#include "codec/coders.h"
#include "coding/thresholds.h"

namespace marovia {

struct PassState {
  int pass = 0;
  float threshold = 0;
};

// Whether the run ends with this pass although its budget is not spent.
inline bool IsLastPass(const Coder& coder, WaveletKind wavelet, const PassState& state) {
  if (state.pass >= kMostPasses) return true;
  return coder.lossless ? state.threshold < 2 : LoopTest(wavelet, state.pass, state.threshold);
}

// Calls run(pass, threshold) with halved thresholds until it returns false, and report(state) after
// each pass that it finished. Returns the last state.
template <class Run, class Report>
PassState RunPasses(const Coder& coder, WaveletKind wavelet, int exponent, Run run, Report report) {
  PassState state{0, std::ldexp(1.0F, exponent)};
  do {
    ++state.pass;
    state.threshold /= 2;
    if (!run(state.pass, state.threshold)) break;
    report(state);
  } while (!IsLastPass(coder, wavelet, state));
  return state;
}

}  // namespace marovia
