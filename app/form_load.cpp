#include <fnmatch.h>
#include <system_error>
#include <vector>

#include "app/frm_main.h"
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
  state.PowerOfTwo[0] = 1;
  for (std::size_t i = 1; i < state.PowerOfTwo.size(); ++i)
    state.PowerOfTwo[i] = static_cast<std::int16_t>(2 * state.PowerOfTwo[i - 1]);
  state.GraphBoxContent = 'E';
  state.GraphBoxRecContent = 'E';
  state.WaveletKind = marovia::WaveletKind::kInteger53;
  state.ROIColor = {255, 255, 48};
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

}  // namespace marovia
