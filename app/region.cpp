// The region of interest by mouse and by keyboard.
#include <algorithm>
#include <tuple>

#include "app/frm_main.h"

namespace marovia {
namespace {

constexpr int kLeftButton = 1;
constexpr int kLongStep = 16;
constexpr Colour kOutlineColour{255, 255, 48};

PicturePoint StepOf(PictureKey key) {
  switch (key) {
    case PictureKey::kLeft:
      return {0, -1};
    case PictureKey::kRight:
      return {0, 1};
    case PictureKey::kUp:
      return {-1, 0};
    case PictureKey::kDown:
      return {1, 0};
    default:
      return {};
  }
}

}  // namespace

std::optional<PictureKey> PictureKeyOf(std::string_view name) {
  using enum PictureKey;
  static constexpr std::pair<std::string_view, PictureKey> kKeys[] = {
      {"Left", kLeft},    {"Right", kRight},   {"Up", kUp},        {"Down", kDown},
      {"Space", kCorner}, {"Return", kCorner}, {"Enter", kCorner}, {"Esc", kGiveUp}};
  for (const auto& [known, key] : kKeys)
    if (known == name) return key;
  return std::nullopt;
}

bool IsArrow(PictureKey key) {
  return key != PictureKey::kCorner && key != PictureKey::kGiveUp;
}

PicturePoint Moved(const std::optional<PicturePoint>& from, PictureKey key, bool longStep) {
  if (!from) return {kPictureSide / 2, kPictureSide / 2};
  const PicturePoint step = StepOf(key);
  const int length = longStep ? kLongStep : 1;
  return {std::clamp(from->row + length * step.row, 0, kPictureSide),
          std::clamp(from->col + length * step.col, 0, kPictureSide)};
}

void frmMain::GraphBox_MouseDown(std::int16_t button, std::int16_t, float x, float y) {
  beforePress_.reset();
  if (GraphBox.content != PictureContent::kImage || (button & kLeftButton) == 0) return;
  PutCrosshairAway();
  beforePress_ = {state.region, chkROIErrorOnly, Report};
  Act([this, x, y] { Draw(&RegionDrag::Begin, x, y); });
}

void frmMain::GraphBox_MouseMove(std::int16_t button, std::int16_t, float x, float y) {
  if (!state.region.IsDragged() || (button & kLeftButton) == 0) return;
  Act([this, x, y] { Draw(&RegionDrag::Follow, x, y); });
}

void frmMain::GraphBox_MouseUp(std::int16_t button, std::int16_t, float x, float y) {
  if (!state.region.IsDragged() || (button & kLeftButton) == 0) return;
  Act([this, x, y] { Draw(&RegionDrag::End, x, y); });
}

void frmMain::GraphBox_DblClick() {
  if (!beforePress_) return;
  std::tie(state.region, chkROIErrorOnly, Report) = *beforePress_;
  beforePress_.reset();
  state.region.GiveUpDrag();
  RefreshGraphBox();
}

bool frmMain::GraphBox_KeyDown(PictureKey key, bool longStep) {
  if (GraphBox.content != PictureContent::kImage || !(GraphBox.crosshair || IsArrow(key)))
    return false;
  Act([this, key, longStep] {
    if (IsArrow(key)) return MoveCrosshair(key, longStep);
    if (key == PictureKey::kCorner) return SetCorner();
    PutCrosshairAway();
  });
  return true;
}

void frmMain::GraphBox_LostFocus() {
  PutCrosshairAway();
}

void frmMain::Draw(RegionDrag::Step step, float x, float y) {
  (state.region.*step)(x, y);
  const bool inForce = state.region.IsInForce();
  chkROIErrorOnly.checked = inForce;
  chkROIErrorOnly.enabled = inForce;
  RefreshGraphBox();
  if (inForce) ReportROICoordinates();
}

// In the units of the mouse.
void frmMain::DrawAtCrosshair(RegionDrag::Step step) {
  const auto [row, col] = *GraphBox.crosshair;
  const UnitsPerPixel units = desktop_.PictureUnits();
  Draw(step, units.horizontal * static_cast<float>(col), units.vertical * static_cast<float>(row));
}

void frmMain::MoveCrosshair(PictureKey key, bool longStep) {
  GraphBox.crosshair = Moved(GraphBox.crosshair, key, longStep);
  if (state.region.IsDragged()) DrawAtCrosshair(&RegionDrag::Follow);
  desktop_.Repaint(GraphBox);
}

// The first corner over a rectangle takes that one away, as a click does.
void frmMain::SetCorner() {
  if (state.region.IsDragged()) {
    DrawAtCrosshair(&RegionDrag::End);
    return PutCrosshairAway();
  }
  DrawAtCrosshair(&RegionDrag::Begin);
  if (state.region.IsDragged()) DrawAtCrosshair(&RegionDrag::Follow);
}

void frmMain::PutCrosshairAway() {
  if (!GraphBox.crosshair) return;
  GraphBox.crosshair.reset();
  state.region.GiveUpDrag();
  RefreshGraphBox();
}

// The rectangle belongs to the image: it is in force while the transform shows, but not on show. A
// drag ends where the image goes.
void frmMain::RefreshGraphBox() {
  GraphBox.outline.reset();
  if (GraphBox.content != PictureContent::kImage) {
    GraphBox.crosshair.reset();
    state.region.GiveUpDrag();
  } else if (state.region.HasOutline()) {
    GraphBox.outline = {state.region.Corners(), kOutlineColour};
  }
  desktop_.Repaint(GraphBox);
}

Region frmMain::GetROICoordinates() const {
  RequireImage();
  const UnitsPerPixel units = desktop_.PictureUnits();
  return marovia::GetROICoordinates(state.region.Corners(), state.NumRows, state.NumCols,
                                    units.vertical, units.horizontal);
}

}  // namespace marovia
