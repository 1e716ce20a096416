#include "measures/region.h"

#include "app/frm_main.h"
#include "base/checked.h"

namespace marovia {
namespace {

constexpr int kLeftButton = 1;

}  // namespace

void frmMain::GraphBox_MouseDown(std::int16_t button, std::int16_t, float x, float y) {
  beforePress_.reset();
  if (state.GraphBoxContent != 'I' || (button & kLeftButton) == 0) return;
  PutCrosshairAway();
  beforePress_ = {{state.ROIRow1, state.ROICol1, state.ROIRow2, state.ROICol2},
                  state.ROISelected,
                  chkROIErrorOnly,
                  Report};
  Act([this, x, y] { BeginRegion(x, y); });
}

void frmMain::GraphBox_MouseMove(std::int16_t button, std::int16_t, float x, float y) {
  if (!dragging_ || (button & kLeftButton) == 0) return;
  Act([this, x, y] { FollowDrag(x, y); });
}

void frmMain::GraphBox_MouseUp(std::int16_t button, std::int16_t, float x, float y) {
  if (!dragging_ || (button & kLeftButton) == 0) return;
  Act([this, x, y] { EndRegion(x, y); });
}

void frmMain::GraphBox_DblClick() {
  if (!beforePress_) return;
  const auto& [corners, selected, restriction, report] = *beforePress_;
  state.ROIRow1 = corners.row1;
  state.ROICol1 = corners.col1;
  state.ROIRow2 = corners.row2;
  state.ROICol2 = corners.col2;
  state.ROISelected = selected;
  chkROIErrorOnly = restriction;
  Report = report;
  dragging_ = false;
  beforePress_.reset();
  RefreshGraphBox();
}

// A click on a rectangle takes it away; only the next one begins another.
void frmMain::BeginRegion(float x, float y) {
  if (state.ROISelected != 0) return DropRegion();
  state.ROIRow1 = ToInt16(double{y});
  state.ROICol1 = ToInt16(double{x});
  DropRegion();
  dragging_ = true;
}

void frmMain::FollowDrag(float x, float y) {
  state.ROIRow2 = ToInt16(double{y});
  state.ROICol2 = ToInt16(double{x});
  RefreshGraphBox();
}

void frmMain::EndRegion(float x, float y) {
  FollowDrag(x, y);
  dragging_ = false;
  state.ROISelected = 1;
  chkROIErrorOnly.checked = true;
  chkROIErrorOnly.enabled = true;
  ReportROICoordinates();
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
