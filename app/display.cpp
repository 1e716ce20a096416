#include "app/frm_main.h"
#include "image/form_pgm.h"
#include "image/sampling.h"

namespace marovia {

void frmMain::DisplayImage(std::int16_t mode) {
  if (mode == 0) TakeSourceImage(ReadFormPgm(ReadChosenFile(dialog.fileName)), {});
  RequireImage();
  const Pointer earlier = pointer_;
  SetPointer(Pointer::kBusy);
  GraphBox.raster = SampleImage(*state.SourceImage);
  state.GraphBoxContent = 'I';
  SetPointer(earlier);
  RefreshGraphBox();

  mnuTransformImage.enabled = true;
  mnuCompress.enabled = true;
  mnuDecompress.enabled = true;
  cmdViewer.enabled = true;
  SelectDisplay(OpDisplayImage);
  OpDisplayTransform.enabled = false;
  GraphBoxRec.raster = {};
  state.GraphBoxRecContent = 'E';
  desktop_.Repaint(GraphBoxRec);
}

void frmMain::DisplayImageWaveletTransform() {
  ShowCoefficients(*state.TransformArray);
}

void frmMain::ShowCoefficients(const Grid<float>& coefficients) {
  const Pointer earlier = pointer_;
  SetPointer(Pointer::kBusy);
  GraphBox.raster = SampleCoefficients(coefficients);
  SetPointer(earlier);
  SendMessage("");
  state.GraphBoxContent = 'T';
  RefreshGraphBox();
}

void frmMain::DisplayImageRec() {
  const Pointer earlier = pointer_;
  SetPointer(Pointer::kBusy);
  GraphBoxRec.raster = SampleImage(*state.ReconstructedImage);
  SetPointer(earlier);
  desktop_.Repaint(GraphBoxRec);
  state.GraphBoxRecContent = 'I';
  cmdViewer.enabled = true;
  mnuTransformImage.enabled = true;
  mnuTransformImage.caption = "&Transform Image";
}

void frmMain::OpDisplayImage_Click() {
  if (state.GraphBoxContent == 'T') Act([this] { DisplayImage(1); });
}

void frmMain::OpDisplayTransform_Click() {
  if (state.GraphBoxContent == 'I') Act([this] { DisplayImageWaveletTransform(); });
}

// The rectangle belongs to the image: it is in force while the transform shows, but not on show. A
// drag ends where the image goes.
void frmMain::RefreshGraphBox() {
  GraphBox.outline.reset();
  if (state.GraphBoxContent != 'I') {
    GraphBox.crosshair.reset();
    dragging_ = false;
  }
  if (state.GraphBoxContent == 'I' && (dragging_ || state.ROISelected != 0)) {
    GraphBox.outline = {{state.ROIRow1, state.ROICol1, state.ROIRow2, state.ROICol2},
                        state.ROIColor};
  }
  desktop_.Repaint(GraphBox);
}

}  // namespace marovia
