// A run of passes: where its thresholds begin, what ends it, and where a decoded value is put.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <span>

#include "marovia/types.h"

#include "passes/homes.h"

namespace marovia {

// The exponent n of the first threshold 2^n, which is a power of two, 1 or more, strictly above
// every magnitude: a coefficient equal to it would be passed over as found before, which no decoder
// could know. Coefficients that are all 0 give 1 with an integer wavelet, 0 with the 9/7 one.
int GetThreshold(std::span<const float> coefficients, WaveletKind wavelet);

// The end of a lossy run: after the pass at threshold 1 with an integer wavelet, after pass 32 with
// the 9/7 one.
bool LoopTest(WaveletKind wavelet, int pass, float threshold);

// No run makes more passes than this, whatever the first threshold that a file names.
constexpr int kMostPasses = 32;

// Where a decoded value of at least `threshold`, that of the last pass, goes in its interval: half
// a threshold further from 0, or a whole one where its refinement in the last pass is missing.
float LastRefinement(float value, float threshold, bool refined);

constexpr std::int64_t kNoLimit = std::numeric_limits<std::int64_t>::max();

// What a compressor's passes go by besides the coefficients.
struct EncoderPlan {
  std::int64_t budget = kNoLimit;  // the run ends at the first test at which this much is spent
  // Whether a budget that the header's charge alone uses up keeps even the first symbol back.
  bool testBeforeFirstSymbol = true;
  // From this many bits on, only what lies in the region is found.
  std::int64_t switchPoint = kNoLimit;
  const HomeSet* region = nullptr;
};

struct PassState {
  int pass = 0;
  float threshold = 0;
};

// The first threshold of a run, and what ends it although its budget is not spent.
struct RunKind {
  WaveletKind wavelet;
  int exponent;
  bool lossless;

  [[nodiscard]] bool IsLastPass(const PassState& state) const {
    if (state.pass >= kMostPasses) return true;
    return lossless ? state.threshold < 2 : LoopTest(wavelet, state.pass, state.threshold);
  }
};

// The loop over the passes, the same in both directions: calls run(pass, threshold) with halved
// thresholds until it returns false, and report(state) after each pass that it finished. Returns
// the last state.
template <class Run, class Report>
PassState RunPasses(const RunKind& kind, Run run, Report report) {
  PassState state{0, std::ldexp(1.0F, kind.exponent)};
  do {
    ++state.pass;
    state.threshold /= 2;
    if (!run(state.pass, state.threshold)) break;
    report(state);
  } while (!kind.IsLastPass(state));
  return state;
}

}  // namespace marovia
