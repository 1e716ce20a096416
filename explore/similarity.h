// How alike two images look.
#pragma once

#include "marovia/image.h"

namespace marovia {

// The mean structural similarity (SSIM), 1 for the same image: over windows of 8 x 8 pixels of even
// weight, one at every fourth row and column. An image smaller than a window is one window.
double Similarity(const Image& one, const Image& other);

}  // namespace marovia
