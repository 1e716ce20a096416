// Smaller pictures of an image: those that the form shows, 256 x 256 whatever its size, and its
// like in a size of choice.
#pragma once

#include "marovia/grid.h"
#include "marovia/image.h"

namespace marovia {

inline constexpr int kPictureSide = 256;

// The source row or column shown at a display coordinate, 1 to 256: coordinate * lines / 256
// rounded half to even, at most lines - 1. Line 0 shows only of 128 lines or fewer.
// Of 512 lines 2, 4, ..., 510, 511 show; of 128 lines 0, 1, 2, 2, 2, 3, 4, 4, 4, 5, ... Error
// kOverflow above 32767 lines.
int SourceLine(int coordinate, int lines);

// 256 x 256 pixels, of which (y - 1, x - 1) is display coordinate (x, y). Error kIndex where there
// is nothing to show.
Image SampleImage(const Image& image);

// The magnitudes of the coefficients rounded half to even; those above 255 are white.
Image SampleCoefficients(const Grid<float>& coefficients);

// Each pixel is the mean of the area that it covers, pixels on its border counted by the part that
// lies inside. Sides from 1 to those of the image.
Image Reduced(const Image& image, int rows, int cols);

// The same with sides of at most `size`, in the shape of the image; one that fits stays as it is.
Image ReducedToFit(const Image& image, int size);
// The same of an image that is a smaller picture of one of rows x cols already, whose shape counts.
Image ReducedToFit(const Image& image, int rows, int cols, int size);

}  // namespace marovia
