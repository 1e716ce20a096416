#include "marovia/measures.h"

#include "app/frm_main.h"
#include "measures/measure_text.h"

namespace marovia {
namespace {

struct Measured {
  ErrorMeasures measures;
  MeasuredArea area = MeasuredArea::kImage;
};

Measured MeasureForm(const frmMain& form) {
  const Image& source = *form.state.SourceImage;
  const Image& reconstruction = *form.state.ReconstructedImage;
  if (!source.SameShape(reconstruction))
    Fail(Errc::kIndex, "The two images differ in shape: " + SizeText(source) + " and " +
                           SizeText(reconstruction) + ".");
  if (!form.chkROIErrorOnly.checked) return {Measure(source, reconstruction)};
  return {Measure(source, reconstruction, form.GetROICoordinates()), MeasuredArea::kRegion};
}

}  // namespace

void frmMain::ComputeSupNormError() {
  const Measured result = MeasureForm(*this);
  SendMessage(SupNormText(result.measures, result.area));
}

void frmMain::ComputeMSEorPSNR(std::int16_t which) {
  const Measured result = MeasureForm(*this);
  SendMessage(which == 0 ? PsnrText(result.measures, result.area)
                         : MeanSquareText(result.measures, result.area));
}

}  // namespace marovia
