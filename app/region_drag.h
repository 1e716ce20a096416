// The rectangle of the region of interest as a user draws it, by mouse or from one corner to the
// other with a crosshair, in the units in which the mouse is reported.
#pragma once

#include <optional>

#include "app/control_kinds.h"
#include "base/checked.h"

namespace marovia {

class RegionDrag {
 public:
  // One of the three below. Error kOverflow beyond 16 bits.
  using Step = void (RegionDrag::*)(float x, float y);

  // A press on a rectangle takes it away; only the next one begins another.
  void Begin(float x, float y) {
    if (phase_ == Phase::kInForce) return GiveUp();
    corners_.row1 = ToInt16(double{y});
    corners_.col1 = ToInt16(double{x});
    phase_ = Phase::kPressed;
  }
  void Follow(float x, float y) {
    corners_.row2 = ToInt16(double{y});
    corners_.col2 = ToInt16(double{x});
    phase_ = Phase::kFollows;
  }
  void End(float x, float y) {
    Follow(x, y);
    phase_ = Phase::kInForce;
  }
  void GiveUp() { phase_ = Phase::kNone; }
  // A rectangle in force outlives what ends a drag.
  void GiveUpDrag() {
    if (IsDragged()) GiveUp();
  }

  [[nodiscard]] bool IsInForce() const { return phase_ == Phase::kInForce; }
  [[nodiscard]] bool IsDragged() const {
    return phase_ == Phase::kPressed || phase_ == Phase::kFollows;
  }
  // From the first move on.
  [[nodiscard]] bool HasOutline() const { return IsInForce() || phase_ == Phase::kFollows; }
  [[nodiscard]] const PictureRectangle& Corners() const { return corners_; }

 private:
  enum class Phase { kNone, kPressed, kFollows, kInForce };

  PictureRectangle corners_;
  Phase phase_ = Phase::kNone;
};

// Whether it moves the crosshair.
bool IsArrow(PictureKey key);
// Where a crosshair goes, which stays on the picture; without one before, to its middle.
PicturePoint Moved(const std::optional<PicturePoint>& crosshair, PictureKey key, bool longStep);

}  // namespace marovia
