// How far two images of one shape are apart.
#pragma once

#include <optional>

#include "marovia/error.h"
#include "marovia/export.h"
#include "marovia/image.h"
#include "marovia/types.h"

namespace marovia {

struct ErrorMeasures {
  float supNorm = 0;          // the largest absolute difference of two samples
  float meanSquareError = 0;  // summed in single precision, row by row
  double rootMeanSquare = 0;
  std::optional<float> psnr;  // in decibels of a peak of 255; none for identical images
};

// Over the whole image, or over a region of it. Error kIndex where the shapes differ, an image is
// empty, or the region reaches outside.
MAROVIA_API ErrorMeasures Measure(const Image& source, const Image& reconstruction,
                                  const std::optional<Region>& region = {});

// A picture of what the reconstruction adds to the source, `gain` times: mid-grey (128) where they
// agree. Error kIndex where the shapes differ.
MAROVIA_API Image DifferenceImage(const Image& source, const Image& reconstruction, double gain);

// The PSNR of a mean square error in decibels of a peak of 255; none for 0 and below.
MAROVIA_API std::optional<float> Psnr(float meanSquareError);

}  // namespace marovia
