// A smaller picture of an image.
#pragma once

#include "marovia/image.h"

namespace marovia {

// Each pixel is the mean of the area that it covers, pixels on its border counted by the part that
// lies inside. Sides from 1 to those of the image.
Image Reduced(const Image& image, int rows, int cols);

// The same with sides of at most `size`, in the shape of the image; one that fits stays as it is.
Image ReducedToFit(const Image& image, int size);

}  // namespace marovia
