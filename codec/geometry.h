// Sides: how many levels they bear, and the padding of an image.
#pragma once

#include "marovia/codec.h"

#include "coding/sides.h"

namespace marovia {

// Error kLimit where a side exceeds kMostSide.
void CheckSides(Sides sides);

// The limit of the levels for an image that is padded, or coded as it is: at least 0 in the first
// case, below it for sides of 1 and 2 in the second.
int LevelLimitOf(Sides sides, WaveletKind wavelet, bool pad);

// As many levels as help, up to 6 and the limit, as long as padding adds at most 6 % of the pixels;
// but not fewer than 3 unless the limit is lower.
int DefaultLevels(Sides sides, WaveletKind wavelet);

// The image with its last row and column repeated up to PaddedSides.
Image Padded(const Image& image, int levels);
Image Cropped(const Image& image, Sides sides);

}  // namespace marovia
