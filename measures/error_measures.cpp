#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "marovia/measures.h"

#include "base/number_text.h"
#include "measures/measure_text.h"
#include "measures/region.h"

namespace marovia {
namespace {

void CheckShapes(const Image& source, const Image& reconstruction) {
  if (source.Empty() || !source.SameShape(reconstruction)) {
    Fail(Errc::kIndex, "The two images differ in shape: " + SizeText(source.Rows(), source.Cols()) +
                           " and " + SizeText(reconstruction.Rows(), reconstruction.Cols()) + ".");
  }
}

std::string Titled(MeasuredArea area, const std::string& text) {
  return area == MeasuredArea::kRegion ? "ROI " + text : text;
}

}  // namespace

ErrorMeasures Measure(const Image& source, const Image& reconstruction,
                      const std::optional<Region>& region) {
  CheckShapes(source, reconstruction);
  const Region area = region.value_or(Region{0, 0, source.Rows() - 1, source.Cols() - 1});
  CheckRegion(area, source, Errc::kIndex);

  int largest = 0;
  float sum = 0;
  for (int r = area.row1; r <= area.row2; ++r) {
    for (int c = area.col1; c <= area.col2; ++c) {
      const int difference = std::abs(source(r, c) - reconstruction(r, c));
      largest = std::max(largest, difference);
      sum = static_cast<float>(double{sum} + difference * difference);
    }
  }
  const std::int64_t count =
      (std::int64_t{area.row2} - area.row1 + 1) * (std::int64_t{area.col2} - area.col1 + 1);

  ErrorMeasures measures;
  measures.supNorm = static_cast<float>(largest);
  measures.meanSquareError = static_cast<float>(double{sum} / static_cast<double>(count));
  measures.rootMeanSquare = std::sqrt(double{measures.meanSquareError});
  measures.psnr = Psnr(measures.meanSquareError);
  return measures;
}

std::optional<float> Psnr(float meanSquareError) {
  // Written so that a NaN gives none either.
  if (!(meanSquareError > 0)) return std::nullopt;
  const double ratio = 255.0 / static_cast<double>(meanSquareError) * 255.0;
  return static_cast<float>(10.0 * std::log(ratio) / std::log(10.0));
}

Image DifferenceImage(const Image& source, const Image& reconstruction, double gain) {
  constexpr double kNoDifference = 128;
  if (!source.SameShape(reconstruction)) Fail(Errc::kIndex, "The images differ in shape.");
  Image picture(source.Rows(), source.Cols());
  std::ranges::transform(
      source.Samples(), reconstruction.Samples(), picture.Samples().begin(), [&](int from, int to) {
        return static_cast<std::uint8_t>(
            std::clamp(std::round(kNoDifference + gain * (to - from)), 0.0, 255.0));
      });
  return picture;
}

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
