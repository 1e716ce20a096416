#include "app/zoom.h"

#include <algorithm>
#include <cmath>

namespace marovia {

Zoom::Zoom(double factor) : factor_(std::clamp(factor, 1.0 / 16, 32.0)) {}

Zoom Zoom::Turned(int angle) const {
  constexpr int kDoubling = 240;
  return Times(std::exp2(static_cast<double>(angle) / kDoubling));
}

std::string Zoom::Text() const {
  return std::to_string(std::lround(factor_ * 100)) + " %";
}

}  // namespace marovia
