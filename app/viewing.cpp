// What is done on the pictures, and the look at them at full resolution.
#include "app/frm_main.h"

namespace marovia {

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
