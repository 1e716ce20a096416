#include "measures/measure_text.h"

#include "base/number_text.h"

namespace marovia {
namespace {

std::string Titled(MeasuredArea area, const std::string& text) {
  return area == MeasuredArea::kRegion ? "ROI " + text : text;
}

}  // namespace

std::string SupNormText(const ErrorMeasures& measures, MeasuredArea area) {
  return Titled(area, "Sup-norm error:  " + TrimmedNumberText(measures.supNorm));
}

std::string MeanSquareText(const ErrorMeasures& measures, MeasuredArea area) {
  if (area == MeasuredArea::kRegion)
    return "ROI Mean Square Error:  " + TrimmedNumberText(measures.meanSquareError);
  return "Root Mean Square Error:  " + TrimmedNumberText(measures.rootMeanSquare);
}

std::string PsnrText(const ErrorMeasures& measures, MeasuredArea area) {
  return Titled(area, PSNRVal(measures.meanSquareError));
}

std::string PSNRVal(float meanSquareError) {
  const std::optional<float> psnr = Psnr(meanSquareError);
  if (!psnr) return "Error computing PSNR.";
  return "PSNR error:  " + TrimmedNumberText(*psnr);
}

}  // namespace marovia
