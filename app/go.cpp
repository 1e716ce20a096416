// What Go and Compute lead to.
#include <algorithm>
#include <array>

#include "marovia/measures.h"

#include "app/frm_main.h"
#include "base/number_text.h"
#include "format/geometry.h"
#include "measures/measure_text.h"
#include "wavelet/transform.h"

namespace marovia {
namespace {

constexpr int kAny = -1;
constexpr int kWdr = 0;
constexpr int kAswdr = 1;
constexpr int kAswdr2 = 2;
constexpr int kBinary = 0;
constexpr int kArithmetic = 1;

// What the user chose: the mode, and the indices of the options.
struct Choice {
  std::string_view mode;
  int lossless;
  int region;
  int method;
  int coding;
};

struct Route {
  Choice choice;
  void (frmMain::*procedure)();
  std::string_view message;  // in place of a procedure
};

constexpr std::string_view kCompress = "Compress";
constexpr std::string_view kDecompress = "Decompress";
constexpr std::string_view kNotYet = "Procedure not available yet.";
constexpr std::string_view kNoRegionYet = "ROI version of this procedure not available yet.";
constexpr std::string_view kNoLossless = "Lossless encoding not available for this option.";

// The first row that fits holds. A choice without a row does nothing: so ASWDR_2 with arithmetic
// coding stays silent when it decompresses.
constexpr std::array kRoutes = {
    // clang-format off
    //     mode        lossless region method   coding
    Route{{kCompress,   0,      0,    kWdr,    kBinary},     &frmMain::Compress_WDR_Binary, {}},
    Route{{kCompress,   0,      0,    kWdr,    kArithmetic}, &frmMain::Compress_WDR_Arithmetic, {}},
    Route{{kCompress,   0,      0,    kAswdr,  kBinary},     &frmMain::Compress_ASWDR_Binary_Ver1, {}},
    Route{{kCompress,   0,      0,    kAswdr,  kArithmetic}, &frmMain::Compress_ASWDR_Arithmetic_Ver1, {}},
    Route{{kCompress,   0,      0,    kAswdr2, kBinary},     &frmMain::Compress_ASWDR_Binary_Ver2, {}},
    Route{{kCompress,   0,      1,    kWdr,    kBinary},     &frmMain::Compress_WDR_Binary_ROI, {}},
    Route{{kCompress,   0,      1,    kWdr,    kArithmetic}, &frmMain::Compress_WDR_Arithmetic_ROI, {}},
    Route{{kCompress,   0,      1,    kAswdr,  kBinary},     &frmMain::Compress_ASWDR_Binary_Ver1_ROI, {}},
    Route{{kCompress,   0,      1,    kAswdr,  kArithmetic}, &frmMain::Compress_ASWDR_Arithmetic_Ver1_ROI, {}},
    Route{{kCompress,   0,      1,    kAswdr2, kBinary},     nullptr, kNoRegionYet},
    Route{{kCompress,   0,      kAny, kAswdr2, kArithmetic}, nullptr, kNotYet},
    Route{{kCompress,   1,      0,    kAswdr,  kArithmetic}, &frmMain::Compress_ASWDR_Ver1_Lossless, {}},
    Route{{kCompress,   1,      1,    kAswdr,  kArithmetic}, &frmMain::Compress_ASWDR_Ver1_Lossless_ROI, {}},
    Route{{kCompress,   1,      kAny, kAny,    kAny},        nullptr, kNoLossless},
    Route{{kDecompress, 0,      kAny, kWdr,    kBinary},     &frmMain::DeCompress_WDR_Binary, {}},
    Route{{kDecompress, 0,      kAny, kWdr,    kArithmetic}, &frmMain::DeCompress_WDR_Arithmetic, {}},
    Route{{kDecompress, 0,      kAny, kAswdr,  kBinary},     &frmMain::DeCompress_ASWDR_Binary_Ver1, {}},
    Route{{kDecompress, 0,      kAny, kAswdr,  kArithmetic}, &frmMain::DeCompress_ASWDR_Arithmetic_Ver1, {}},
    Route{{kDecompress, 0,      kAny, kAswdr2, kBinary},     &frmMain::DeCompress_ASWDR_Binary_Ver2, {}},
    Route{{kDecompress, 1,      kAny, kAswdr,  kArithmetic}, &frmMain::DeCompress_ASWDR_Ver1_Lossless, {}},
    Route{{kDecompress, 1,      kAny, kAny,    kAny},        nullptr, kNoLossless},
    // clang-format on
};

bool Fits(const Choice& row, const Choice& choice) {
  const auto fits = [](int wanted, int chosen) { return wanted == kAny || wanted == chosen; };
  return row.mode == choice.mode && row.lossless == choice.lossless &&
         fits(row.region, choice.region) && fits(row.method, choice.method) &&
         fits(row.coding, choice.coding);
}

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

void frmMain::cmdBegin_Click(std::int16_t index) {
  Act([this, index] {
    if (index == 1) return Compute();
    const std::string& mode = Label[0].caption;
    if (mode == "Transform") return GoTransform();
    if (mode == kCompress || mode == kDecompress) return GoCoder();
  });
}

void frmMain::GoTransform() {
  const BusyPointer busy(desktop_);
  if (OpTransform[0].selected) {
    TransformTheImage();
    OpDisplayTransform.enabled = true;
    SelectDisplay(OpDisplayTransform);
    OpDisplayTransform_Click();
  } else {
    InvertTheTransform();
    OpDisplayTransform.enabled = false;
    OpTransform.Select(0);
  }
}

void frmMain::TransformTheImage() {
  RequireImage();
  const std::int16_t levels = SetNumberOfLevels();
  if (levels < 0) return;
  const Image& image = *state.SourceImage;
  const auto transform = [&](const Image& coded) {
    return marovia::TransformTheImage(coded, state.WaveletKind, levels);
  };
  state.TransformArray = transform(state.padToFit ? Padded(image, levels) : image);
  DisplayImageWaveletTransform();
}

void frmMain::InvertTheTransform() {
  RequireImage();
  const std::int16_t levels = SetNumberOfLevels();
  if (levels < 0) return;
  Grid<float> coefficients = *state.TransformArray;
  state.ReconstructedImage =
      Cropped(marovia::InvertTheTransformQuant(coefficients, state.WaveletKind, levels),
              {state.NumRows, state.NumCols});
  DisplayImage(1);
  DisplayImageRec();
}

void frmMain::GoCoder() {
  const Choice choice{.mode = Label[0].caption,
                      .lossless = LeadingNumber(txtBitRate.text) == 0 ? 1 : 0,
                      .region = state.region.IsInForce() ? 1 : 0,
                      .method = static_cast<int>(OpMethod.Selected()),
                      .coding = static_cast<int>(OpEntropyCode.Selected())};
  const auto* route = std::ranges::find_if(
      kRoutes, [&choice](const Route& row) { return Fits(row.choice, choice); });
  if (route == kRoutes.end()) return;
  if (route->procedure == nullptr) return report_.Note(route->message);
  (this->*route->procedure)();
}

void frmMain::Compute() {
  RequireImage();
  switch (OpErrorMeasure.Selected()) {
    case 0:
      return ComputeSupNormError();
    case 1:
      return ComputeMSEorPSNR(0);
    case 2:
      return ComputeMSEorPSNR(1);
    default:
      return;
  }
}

void frmMain::ComputeSupNormError() {
  Measured result;
  desktop_.Work([&] { result = MeasureForm(*this); });
  SendMessage(SupNormText(result.measures, result.area));
}

void frmMain::ComputeMSEorPSNR(std::int16_t which) {
  Measured result;
  desktop_.Work([&] { result = MeasureForm(*this); });
  SendMessage(which == 0 ? PsnrText(result.measures, result.area)
                         : MeanSquareText(result.measures, result.area));
}

}  // namespace marovia
