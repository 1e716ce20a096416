// The pictures: what they show, what is done on them, and the way to the studio.
#include <algorithm>

#include "app/form_pgm.h"
#include "app/frm_main.h"
#include "base/number_text.h"
#include "codec/coders.h"

namespace marovia {

void frmMain::DisplayImage(std::int16_t mode) {
  const std::string& file = dialog.fileName;
  if (mode == 0)
    OfFile(file, [&] { TakeSourceImage(file, ReadFormPgm(ReadChosenFile(file)), {}); });
  RequireImage();
  const BusyPointer busy(desktop_);
  GraphBox.raster = SampleImage(*state.SourceImage);
  GraphBox.content = PictureContent::kImage;
  RefreshGraphBox();

  mnuTransformImage.enabled = true;
  mnuCompress.enabled = true;
  mnuDecompress.enabled = true;
  cmdStudio.enabled = true;
  SelectDisplay(OpDisplayImage);
  OpDisplayTransform.enabled = false;
  GraphBoxRec.raster = {};
  desktop_.Repaint(GraphBoxRec);
}

void frmMain::DisplayImageWaveletTransform() {
  ShowCoefficients(*state.TransformArray);
}

void frmMain::ShowCoefficients(const Grid<float>& coefficients) {
  const BusyPointer busy(desktop_);
  GraphBox.raster = SampleCoefficients(coefficients);
  SendMessage("");
  GraphBox.content = PictureContent::kTransform;
  RefreshGraphBox();
}

void frmMain::DisplayImageRec() {
  const BusyPointer busy(desktop_);
  GraphBoxRec.raster = SampleImage(*state.ReconstructedImage);
  desktop_.Repaint(GraphBoxRec);
  cmdStudio.enabled = true;
  mnuTransformImage.enabled = true;
  mnuTransformImage.caption = "&Transform Image";
}

void frmMain::OpDisplayImage_Click() {
  if (GraphBox.content == PictureContent::kTransform) Act([this] { DisplayImage(1); });
}

void frmMain::OpDisplayTransform_Click() {
  if (GraphBox.content == PictureContent::kImage) Act([this] { DisplayImageWaveletTransform(); });
}

void frmMain::Picture_Mouse(const PictureBox& picture, MouseHandler handler, unsigned buttons,
                            PicturePoint at) {
  if (!picture.drawnOn) return;
  const UnitsPerPixel units = desktop_.PictureUnits();
  (this->*handler)(static_cast<std::int16_t>(buttons), 0,
                   units.horizontal * static_cast<float>(at.col),
                   units.vertical * static_cast<float>(at.row));
}

void frmMain::Picture_DblClick(const PictureBox& picture) {
  if (picture.drawnOn) GraphBox_DblClick();
  ShowStudio();
}

bool frmMain::Picture_KeyDown(const PictureBox& picture, std::string_view name, bool longStep) {
  const auto key = PictureKeyOf(name);
  if (picture.drawnOn && key && GraphBox_KeyDown(*key, longStep)) return true;
  if (name != "Return" && name != "Enter") return false;
  ShowStudio();
  return true;
}

void frmMain::cmdStudio_Click() {
  ShowStudio();
}

void frmMain::ShowStudio() {
  if (GraphBoxRec.raster.Empty() && state.SourceImage->Empty()) return;
  desktop_.ShowStudio(RequestOfStudio());
}

// The file whose picture is shown, else the source with the options as they stand.
StudioRequest frmMain::RequestOfStudio() const {
  StudioRequest request{.source = state.SourceImage, .sourceFile = state.sourceFile};
  if (!GraphBoxRec.raster.Empty()) request.packedFile = state.packedFile;
  request.rate = LeadingNumber(txtBitRate.text);
  const Coder* coder = FindCoder(
      OpMethod[0].selected ? ScanMethod::kWdr : ScanMethod::kAswdr, OpMethod[2].selected ? 2 : 1,
      OpEntropyCode[0].selected ? EntropyCoding::kBinary : EntropyCoding::kArithmetic,
      request.rate == 0);
  if (coder != nullptr) request.kind = coder->kind;
  request.wavelet = state.WaveletKind;
  const auto levels = static_cast<int>(std::clamp(LeadingNumber(txtLevels.text), 0.0, 12.0));
  if (levels > 0) request.levels = levels;
  if (state.region.IsInForce()) request.region = GetROICoordinates();
  request.share = static_cast<float>(LeadingNumber(txtROIPercent.text));
  return request;
}

}  // namespace marovia
