// What the form says: in its report, above its pictures and below its rate.
#include <algorithm>

#include "marovia/error.h"

#include "app/frm_main.h"
#include "base/number_text.h"
#include "codec/coders.h"
#include "codec/report_text.h"

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

void frmMain::SendMessage(std::string_view text) {
  report_.Show(text);
}

void frmMain::ReportData(std::int16_t pass, float threshold, std::int32_t significantCount,
                         std::int32_t bitCount) {
  const PassReport report{pass, threshold, significantCount, bitCount};
  report_.Append(PassReportText(report, state.NumRows, state.NumCols, false));
}

void frmMain::ReportDataRec(std::int16_t pass, float threshold, std::int32_t significantCount,
                            std::int32_t bitCount) {
  const PassReport report{pass, threshold, significantCount, bitCount};
  report_.Append(PassReportText(report, state.decodedSides.rows, state.decodedSides.cols, true));
}

void frmMain::ReportCompressedFile(const std::string& fileName, const Coder& coder) {
  const char* lead = coder.method == ScanMethod::kAswdr ? "\r\n" : "";
  report_.Close(lead + ("Compressed file: " + fileName + "\r\n") +
                "To decompress this file, press the GO button.");
}

void frmMain::ReportROICoordinates() {
  const Region region = GetROICoordinates();
  const auto corner = [](int row, int col) {
    return "corner: (" + TrimmedNumberText(row) + ", " + TrimmedNumberText(col) + ")";
  };
  SendMessage("Upper left " + corner(region.row1, region.col1) + "\r\nLower right " +
              corner(region.row2, region.col2));
}

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
  return state.region.IsInForce() ? "lossless in the region only" : "lossless";
}

std::string frmMain::SourceCaption() const {
  return Shape(GraphBox.content == PictureContent::kTransform ? "Transform" : "Source",
               *state.SourceImage);
}

std::string frmMain::ReconstructionCaption() const {
  const bool shown = !GraphBoxRec.raster.Empty();
  return Shape("Reconstruction", shown ? *state.ReconstructedImage : Image());
}

}  // namespace marovia
