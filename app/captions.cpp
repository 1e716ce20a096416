// What the form says beside its pictures and its rate.
#include <algorithm>

#include "marovia/error.h"

#include "app/frm_main.h"
#include "base/number_text.h"

namespace marovia {
namespace {

std::string BytesText(std::int32_t budget) {
  const std::int32_t bits = std::max(0, budget);
  return ": " + std::to_string(bits / 8 + (bits % 8 != 0 ? 1 : 0)) + " bytes";
}

std::string Shape(const std::string& what, const Image& image) {
  if (image.Empty()) return what;
  return what + ": " + SizeText(image) + " pixels";
}

}  // namespace

std::string frmMain::RateHint() const {
  try {
    const double rate = LeadingNumber(txtBitRate.text);
    if (rate == 0) return LosslessHint();
    const bool sized = !state.SourceImage->Empty();
    return TrimmedNumberText(rate) + " bits per pixel" +
           (sized ? BytesText(Budget(rate, state.NumRows, state.NumCols)) : "");
  } catch (const Error&) {
    return "more bits than a file can have";
  }
}

// A decompression goes by its file alone.
std::string frmMain::LosslessHint() const {
  if (Label[0].caption == "Decompress") return "lossless";
  if (state.WaveletKind == marovia::WaveletKind::kDaub97) return "not lossless with Daub 9/7";
  return state.ROISelected != 0 ? "lossless in the region only" : "lossless";
}

std::string frmMain::SourceCaption() const {
  return Shape(state.GraphBoxContent == 'T' ? "Transform" : "Source", *state.SourceImage);
}

std::string frmMain::ReconstructionCaption() const {
  const bool shown = !GraphBoxRec.raster.Empty();
  return Shape("Reconstruction", shown ? *state.ReconstructedImage : Image());
}

}  // namespace marovia
