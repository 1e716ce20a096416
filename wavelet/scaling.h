// What the coefficients go through between transform and coder: scaling, and the low band's mean.
#pragma once

#include "marovia/grid.h"
#include "marovia/types.h"

#include "wavelet/lifting.h"

namespace marovia {

// Multiplies (forward) or divides the detail bands of level l by 2^l and the low band of the last
// level L by 2^(L+1), so that magnitudes are comparable across the levels of an integer wavelet.
// Sides that do not halve evenly are rounded half to even here, where the bands themselves drop the
// half (75 becomes 38, not 37): part of the file format.
void ScalingOfWT(Grid<float>& coefficients, int levels, Direction direction);

// Takes the mean of the low band off it and returns it: a whole number with an integer wavelet.
// Summed in single precision, row by row.
float SubtractAverage(Grid<float>& coefficients, WaveletKind wavelet, int levels);

// Puts it back.
void AddAverage(Grid<float>& coefficients, int levels, float mean);

}  // namespace marovia
