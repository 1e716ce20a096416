// What a click on a control leads to.
#include <array>

#include "app/frm_main.h"

namespace marovia {

void frmMain::Click(const Control& control) {
  struct Row {
    const Control& control;
    void (frmMain::*handler)();
  };
  const std::array rows = {
      Row{mnuGetImage, &frmMain::mnuGetImage_Click},
      Row{mnuSaveReconstructedImage, &frmMain::mnuSaveReconstructedImage_Click},
      Row{mnuTransformImage, &frmMain::mnuTransformImage_Click},
      Row{mnuCompress, &frmMain::mnuCompress_Click},
      Row{mnuDecompress, &frmMain::mnuDecompress_Click},
      Row{mnuErrormeasures, &frmMain::mnuErrormeasures_Click},
      Row{mnuHelp, &frmMain::mnuHelp_Click},
      Row{cmdViewer, &frmMain::cmdViewer_Click},
      Row{OpDisplayImage, &frmMain::OpDisplayImage_Click},
      Row{OpDisplayTransform, &frmMain::OpDisplayTransform_Click},
      Row{cmbWavelet, &frmMain::cmbWavelet_Click}};
  SetMark(control);
  for (const Row& row : rows)
    if (&row.control == &control) (this->*row.handler)();
  for (std::size_t i = 0; i < cmdBegin.size(); ++i)
    if (&cmdBegin[i] == &control) cmdBegin_Click(static_cast<std::int16_t>(i));
}

// An option is selected in place of the others of its group; a check box turns.
void frmMain::SetMark(const Control& control) {
  OpTransform.Select(control);
  OpMethod.Select(control);
  OpEntropyCode.Select(control);
  OpErrorMeasure.Select(control);
  if (&control == &OpDisplayImage) SelectDisplay(OpDisplayImage);
  if (&control == &OpDisplayTransform) SelectDisplay(OpDisplayTransform);
  if (&control == &chkROIErrorOnly) chkROIErrorOnly.checked = !chkROIErrorOnly.checked;
}

}  // namespace marovia
