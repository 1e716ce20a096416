#include "app/frm_main.h"
#include "base/number_text.h"
#include "format/geometry.h"
#include "wavelet/catalogue.h"

namespace marovia {

void frmMain::cmbWavelet_Click() {
  if (const auto wavelet = WaveletOfLabel(cmbWavelet.text)) state.WaveletKind = *wavelet;
}

void frmMain::ResetWaveletLabel() {
  cmbWavelet.text = WaveletLabel(state.WaveletKind);
  desktop_.Repaint(cmbWavelet);
}

std::int16_t frmMain::SupportOfWavelet() const {
  return static_cast<std::int16_t>(marovia::SupportOfWavelet(state.WaveletKind));
}

Sides frmMain::SidesForLevels() const {
  const Sides sides{state.NumRows, state.NumCols};
  return state.padToFit ? PaddedSides(sides, 0) : sides;
}

std::int16_t frmMain::SetNumberOfLevels() {
  RequireImage();
  const auto [rows, cols] = SidesForLevels();
  const LevelChoice choice =
      marovia::SetNumberOfLevels(txtLevels.text, rows, cols, state.WaveletKind);
  if (!choice.message.empty()) {
    Note(choice.message);
    desktop_.SetFocus(txtLevels);
  } else if (choice.held) {
    txtLevels.text = TrimmedNumberText(choice.levels);
    desktop_.Repaint(txtLevels);
  }
  return static_cast<std::int16_t>(choice.levels);
}

std::int16_t frmMain::SetNumberOfLevelsLossless() {
  return SetNumberOfLevels();
}

}  // namespace marovia
