// The two-dimensional transform of an image over several levels, and back.
//
// After L levels of an image of R x C the coefficients form a pyramid: the low band of the last
// level (R / 2^L x C / 2^L, halves dropped) in the top left corner, and for each level its three
// detail bands beside, below and across the corner that the next level transforms again. Sides that
// are no multiples of 2^L are coded and decoded in step, but their odd lines do not come back
// faithfully.
#pragma once

#include "marovia/error.h"
#include "marovia/image.h"
#include "marovia/types.h"

namespace marovia {

// Rows then columns of the image, then of the low band, level after level; with an integer wavelet
// then scaled (ScalingOfWT). 0 levels give the image's samples, scaled.
Grid<float> TransformTheImage(const Image& image, WaveletKind wavelet, int levels);

// Back again: undoes the scaling, then the levels from the coarsest up, columns before rows, and
// rounds to pixels. Uses up the coefficients. Error kOverflow where a value leaves the range that a
// step or a pixel has.
Image InvertTheTransformQuant(Grid<float>& coefficients, WaveletKind wavelet, int levels);

// A pixel from a value: rounded half to even, the magnitude of what is negative, 255 at the most.
// Error kOverflow where the rounded value or its magnitude leaves 16 bits.
void ToPixels(std::span<const float> values, std::span<std::uint8_t> pixels);

}  // namespace marovia
