// The pictures: what they show, what is done on them, and the look at them at full resolution.
#include "app/form_pgm.h"
#include "app/frm_main.h"

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
  cmdViewer.enabled = true;
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
  cmdViewer.enabled = true;
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
  ShowViewer(picture.drawnOn);
}

bool frmMain::Picture_KeyDown(const PictureBox& picture, std::string_view name, bool longStep) {
  const auto key = PictureKeyOf(name);
  if (picture.drawnOn && key && GraphBox_KeyDown(*key, longStep)) return true;
  if (name != "Return" && name != "Enter") return false;
  ShowViewer(picture.drawnOn);
  return true;
}

void frmMain::cmdViewer_Click() {
  ShowViewer(true);
}

void frmMain::ShowViewer(bool prefersSource) {
  const auto decoded = GraphBoxRec.raster.Empty() ? SharedValue<Image>() : state.ReconstructedImage;
  if (decoded->Empty() && state.SourceImage->Empty()) return;
  desktop_.ShowViewer({state.SourceImage, decoded, prefersSource});
}

}  // namespace marovia
