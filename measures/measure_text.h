// The words in which every front gives the error measures. Numbers follow two blanks, without a
// blank for their sign.
#pragma once

#include <string>

#include "marovia/measures.h"

namespace marovia {

// What the numbers were taken over; those of a region say "ROI".
enum class MeasuredArea { kImage, kRegion };

std::string SupNormText(const ErrorMeasures& measures, MeasuredArea area);

// The root mean square error of an image, but the mean square error itself of a region.
std::string MeanSquareText(const ErrorMeasures& measures, MeasuredArea area);

std::string PsnrText(const ErrorMeasures& measures, MeasuredArea area);

// The PSNR for a mean square error, or "Error computing PSNR." where it has none: 0, below 0 or not
// a number.
std::string PSNRVal(float meanSquareError);

}  // namespace marovia
