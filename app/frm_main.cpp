// Start and end of the form, its menus, and the guard around what a user does.
#include "app/frm_main.h"

#include <fnmatch.h>
#include <system_error>
#include <utility>
#include <vector>

#include "marovia/error.h"

#include "wavelet/catalogue.h"

namespace marovia {
namespace {

namespace fs = std::filesystem;

constexpr int kFormWidth = 12000;
constexpr int kSidePanelLeft = 7920;

std::vector<fs::path> FilesThatMatch(const std::string& pattern) {
  std::vector<fs::path> files;
  std::error_code failed;
  for (fs::directory_iterator entry(fs::current_path(failed), failed), end; !failed && entry != end;
       entry.increment(failed)) {
    std::error_code unknown;
    if (!fs::is_regular_file(entry->symlink_status(unknown))) continue;
    if (fnmatch(pattern.c_str(), entry->path().filename().c_str(), 0) == 0)
      files.push_back(entry->path());
  }
  return files;
}

}  // namespace

void frmMain::Form_Load() {
  InitializeGlobalVariables();
  InitializeSideBox();
  InitializeWaveletLabels();
  CreatePublicVersionOfForm();
  window.left = 0;
  window.top = 0;
  window.width = kFormWidth;
  Frame2.place.left = kSidePanelLeft;
}

// Every file is closed when the action that opened it ends, so none is open here.
void frmMain::Form_Unload() {
  SafeKill("*.wti");
  SafeKill("*.rim");
  SafeKill("*.wtr");
}

void frmMain::InitializeGlobalVariables() {
  state.WaveletKind = marovia::WaveletKind::kInteger53;
  GraphBox.content = PictureContent::kNothing;
}

void frmMain::InitializeSideBox() {
  for (FrameBox& panel : frProc) {
    panel.place.top = 2 * Frame2.place.height;
    panel.place.height = Frame2.place.height;
  }
}

void frmMain::InitializeWaveletLabels() {
  for (const marovia::WaveletKind wavelet : kWaveletsAsListed)
    cmbWavelet.list.emplace_back(WaveletLabel(wavelet));
  cmbWavelet.text = WaveletLabel(marovia::WaveletKind::kInteger53);
}

void frmMain::CreatePublicVersionOfForm() {
  mnuTransformImage.enabled = false;
  mnuTransformImage.visible = false;
  OpMethod[2].enabled = false;
  OpMethod[2].visible = false;

  const Place& label = Label2.place;
  const int gap = OpMethod[2].place.top - label.top;
  OpMethod[0].place.left = label.left + label.width;
  OpMethod[1].place.left = OpMethod[0].place.left + OpMethod[0].place.width;
  OpMethod[0].place.top = OpMethod[1].place.top = label.top;
  Frame3.place.height -= gap;
  Frame[1].place.height -= gap;
}

void frmMain::SafeKill(const std::string& pattern) {
  for (const fs::path& file : FilesThatMatch(pattern)) {
    std::error_code ignored;
    fs::remove(file, ignored);
  }
}

void frmMain::Click(const Control& control) {
  SetMark(control);
  if (control.handler != nullptr) control.handler(*this);
}

void frmMain::Act(const std::function<void()>& action) {
  // A handler called by another is part of that one's action.
  if (acting_) return action();
  const Controls earlierControls = *this;
  const AppState earlierState = state;
  acting_ = true;
  const std::string failure = FailureOf(action);
  acting_ = false;
  if (failure.empty()) return;
  static_cast<Controls&>(*this) = earlierControls;
  state = earlierState;
  state.region.GiveUpDrag();
  RefreshGraphBox();
  report_.Note(failure);
}

void frmMain::RequireImage() const {
  if (state.SourceImage->Empty())
    Fail(Errc::kInvalidArgument, "There is no image yet; Get Image in the File menu loads one.");
}

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
