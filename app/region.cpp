#include "measures/region.h"

#include "app/frm_main.h"
#include "base/checked.h"

namespace marovia {
namespace {

constexpr int kLeftButton = 1;

}  // namespace

void frmMain::GraphBox_MouseDown(std::int16_t button, std::int16_t, float x, float y) {
  if (state.GraphBoxContent != 'I' || (button & kLeftButton) == 0) return;
  Act([this, x, y] {
    // A click on a rectangle takes it away; only the next one begins another.
    if (state.ROISelected != 0) return DropRegion();
    state.ROIRow1 = ToInt16(double{y});
    state.ROICol1 = ToInt16(double{x});
    state.ROISelected = 0;
    chkROIErrorOnly.checked = false;
    chkROIErrorOnly.enabled = false;
    dragging_ = true;
  });
}

void frmMain::GraphBox_MouseMove(std::int16_t button, std::int16_t, float x, float y) {
  if (!dragging_ || (button & kLeftButton) == 0) return;
  Act([this, x, y] { FollowDrag(x, y); });
}

void frmMain::GraphBox_MouseUp(std::int16_t button, std::int16_t, float x, float y) {
  if (!dragging_ || (button & kLeftButton) == 0) return;
  Act([this, x, y] {
    FollowDrag(x, y);
    dragging_ = false;
    state.ROISelected = 1;
    chkROIErrorOnly.checked = true;
    chkROIErrorOnly.enabled = true;
    ReportROICoordinates();
  });
}

void frmMain::FollowDrag(float x, float y) {
  state.ROIRow2 = ToInt16(double{y});
  state.ROICol2 = ToInt16(double{x});
  RefreshGraphBox();
}

void frmMain::DropRegion() {
  state.ROISelected = 0;
  chkROIErrorOnly.checked = false;
  chkROIErrorOnly.enabled = false;
  RefreshGraphBox();
}

Region frmMain::GetROICoordinates() const {
  RequireImage();
  const PictureRectangle rectangle{state.ROIRow1, state.ROICol1, state.ROIRow2, state.ROICol2};
  const UnitsPerPixel units = desktop_.PictureUnits();
  return marovia::GetROICoordinates(rectangle, state.NumRows, state.NumCols, units.vertical,
                                    units.horizontal);
}

}  // namespace marovia
