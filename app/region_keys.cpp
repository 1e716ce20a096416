// The region of interest by keyboard.
#include <algorithm>

#include "app/frm_main.h"
#include "image/sampling.h"

namespace marovia {
namespace {

constexpr int kLongStep = 16;

bool IsArrow(PictureKey key) {
  return key != PictureKey::kCorner && key != PictureKey::kGiveUp;
}

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

bool frmMain::GraphBox_KeyDown(PictureKey key, bool longStep) {
  if (state.GraphBoxContent != 'I' || !(GraphBox.crosshair || IsArrow(key))) return false;
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

void frmMain::MoveCrosshair(PictureKey key, bool longStep) {
  const PicturePoint step = StepOf(key);
  const int length = longStep ? kLongStep : 1;
  if (const auto from = GraphBox.crosshair) {
    GraphBox.crosshair = {std::clamp(from->row + length * step.row, 0, kPictureSide),
                          std::clamp(from->col + length * step.col, 0, kPictureSide)};
  } else {
    GraphBox.crosshair = {kPictureSide / 2, kPictureSide / 2};
  }
  if (dragging_) AtCrosshair(&frmMain::FollowDrag);
  desktop_.Repaint(GraphBox);
}

// The first corner over a rectangle takes that one away, as a click does.
void frmMain::SetCorner() {
  if (dragging_) {
    AtCrosshair(&frmMain::EndRegion);
    return PutCrosshairAway();
  }
  AtCrosshair(&frmMain::BeginRegion);
  if (dragging_) AtCrosshair(&frmMain::FollowDrag);
}

void frmMain::PutCrosshairAway() {
  if (!GraphBox.crosshair) return;
  GraphBox.crosshair.reset();
  dragging_ = false;
  RefreshGraphBox();
}

// Takes a step of a drag there, in the units of the mouse.
void frmMain::AtCrosshair(void (frmMain::*step)(float x, float y)) {
  const auto [row, col] = *GraphBox.crosshair;
  const UnitsPerPixel units = desktop_.PictureUnits();
  (this->*step)(units.horizontal * static_cast<float>(col),
                units.vertical * static_cast<float>(row));
}

}  // namespace marovia
