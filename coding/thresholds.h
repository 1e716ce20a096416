// The thresholds of the passes: where they begin, where they end, and where a decoded value is put.
#pragma once

#include <span>

#include "marovia/types.h"

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

}  // namespace marovia
