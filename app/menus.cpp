#include "app/frm_main.h"

namespace marovia {

void frmMain::mnuGetImage_Click() {
  Act([this] { GetTheImage(); });
}

void frmMain::mnuSaveReconstructedImage_Click() {
  Act([this] { SaveTheReconstructedImage(); });
}

void frmMain::mnuTransformImage_Click() {
  ShowPanel("Transform", true, false, false);
}

void frmMain::mnuCompress_Click() {
  ShowPanel("Compress", false, true, true);
}

void frmMain::mnuDecompress_Click() {
  ShowPanel("Decompress", false, true, true);
}

void frmMain::mnuErrormeasures_Click() {
  InitializeSideBox();
  frProc[1].place.top = 0;
}

void frmMain::mnuHelp_Click() {
  constexpr int kShowContents = 3;
  Act([this] { desktop_.ShowHelp(desktop_.ProgramFolder() / "Marovia.HLP", kShowContents); });
}

void frmMain::ShowPanel(std::string_view mode, bool transformType, bool coding, bool bitRate) {
  InitializeSideBox();
  Label[0].caption = mode;
  Frame[0].visible = transformType;
  Frame[1].visible = coding;
  Frame[2].visible = bitRate;
  int top = 0;
  for (FrameBox& frame : Frame) {
    if (!frame.visible) continue;
    frame.place.top = top;
    top += frame.place.height;
  }
  frProc[0].place.top = 0;
}

}  // namespace marovia
