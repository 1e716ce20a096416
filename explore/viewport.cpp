#include "explore/viewport.h"

#include <algorithm>
#include <cmath>

namespace marovia {
namespace {

constexpr double kLeastScale = 1.0 / 64;
constexpr double kMostScale = 64;

// An image smaller than the pane stands in the middle, a larger one leaves no gap.
double Held(double corner, double shown, double pane) {
  if (shown <= pane) return std::floor((pane - shown) / 2);
  return std::clamp(std::round(corner), pane - shown, 0.0);
}

}  // namespace

void Viewport::SetImage(Extent image) {
  if (image.width == image_.width && image.height == image_.height) return;
  image_ = image;
  Fit();
}

void Viewport::SetPane(Extent pane) {
  const Spot middle = ToImage(Middle());
  pane_ = pane;
  if (fits_) return Fit();
  const Spot moved = ToPane(middle);
  PanBy(Middle().x - moved.x, Middle().y - moved.y);
}

Spot Viewport::ToImage(Spot pane) const {
  return {(pane.x - corner_.x) / scale_, (pane.y - corner_.y) / scale_};
}

Spot Viewport::ToPane(Spot image) const {
  return {corner_.x + image.x * scale_, corner_.y + image.y * scale_};
}

void Viewport::Fit() {
  if (image_.width > 0 && pane_.width > 0) {
    const double scale = std::min(pane_.width / image_.width, pane_.height / image_.height);
    scale_ = std::clamp(scale, kLeastScale, 1.0);
  }
  Hold();
  fits_ = true;
}

void Viewport::ZoomTo(double scale, Spot fixed) {
  const Spot kept = ToImage(fixed);
  scale_ = std::clamp(scale, kLeastScale, kMostScale);
  corner_ = {fixed.x - kept.x * scale_, fixed.y - kept.y * scale_};
  Hold();
  fits_ = false;
}

void Viewport::PanBy(double right, double down) {
  corner_ = {corner_.x + right, corner_.y + down};
  Hold();
}

void Viewport::Hold() {
  corner_ = {Held(corner_.x, image_.width * scale_, pane_.width),
             Held(corner_.y, image_.height * scale_, pane_.height)};
}

}  // namespace marovia
