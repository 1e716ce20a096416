// The two-dimensional transform of an image over several levels, and back.
//
// After L levels of an image of R x C the coefficients form a pyramid: the low band of the last
// level (R / 2^L x C / 2^L, halves dropped) in the top left corner, and for each level its three
// detail bands beside, below and diagonally below the corner that the next level transforms again.
// Sides that are no multiples of 2^L are coded and decoded in step, but their odd lines do not come
// back faithfully.
#pragma once

#include <cstdint>

#include "marovia/error.h"
#include "marovia/image.h"
#include "marovia/types.h"

#include "wavelet/lifting.h"

namespace marovia {

// Rows then columns of the image, then of the low band, level after level; with an integer wavelet
// then scaled (ScalingOfWT). 0 levels give the image's samples, scaled. Here and below, the result
// is the same on any number of threads.
Grid<float> TransformTheImage(const Image& image, WaveletKind wavelet, int levels, int threads = 1);

// A side of the picture that so many levels left out make of one.
constexpr int ReducedSide(int side, int levels) {
  return static_cast<int>((std::int64_t{side} + (std::int64_t{1} << levels) - 1) >> levels);
}

// Back again: undoes the scaling, then the levels from the coarsest up, columns before rows, and
// rounds to pixels. Uses up the coefficients. Error kOverflow where a value leaves the range that a
// step or a pixel has.
Image InvertTheTransformQuant(Grid<float>& coefficients, WaveletKind wavelet, int levels,
                              int threads = 1);

// A pixel from a value: rounded half to even, the magnitude of what is negative, 255 at the most.
// Error kOverflow where the rounded value or its magnitude leaves 16 bits.
void ToPixels(std::span<const float> values, std::span<std::uint8_t> pixels);

// Multiplies (forward) or divides the detail bands of level l by 2^l and the low band of the last
// level L by 2^(L+1), so that magnitudes are comparable across the levels of an integer wavelet.
// Sides that do not halve evenly are rounded half to even here, where the bands themselves drop the
// half (75 becomes 38, not 37): part of the file format.
void ScalingOfWT(Grid<float>& coefficients, int levels, Direction direction, int threads = 1);

// Takes the mean of the low band off it and returns it: a whole number with an integer wavelet.
// Summed in single precision, row by row.
float SubtractAverage(Grid<float>& coefficients, WaveletKind wavelet, int levels);

// Puts it back.
void AddAverage(Grid<float>& coefficients, int levels, float mean);

}  // namespace marovia
