// A region held by the mouse: by a corner, an edge or all of it.
#pragma once

#include <optional>

#include "marovia/types.h"

#include "explore/viewport.h"

namespace marovia {

// Which of its bounds move with the hand; all four move it whole.
struct Grip {
  bool left = false;
  bool top = false;
  bool right = false;
  bool bottom = false;

  [[nodiscard]] bool MovesAll() const { return left && right; }
  friend bool operator==(const Grip&, const Grip&) = default;
};

// What a hand at a place in the image takes hold of: a bound within `reach` pixels, else what is
// inside the region, else nothing.
std::optional<Grip> GripAt(const Region& region, Spot place, double reach);

// The region with what is held moved so many pixels, inside an image of rows x cols. A bound that
// passes the opposite one takes its place.
Region Dragged(const Region& region, const Grip& grip, Spot by, int rows, int cols);

// Between two places, both of whose pixels belong to it.
Region RegionBetween(Spot one, Spot other, int rows, int cols);

}  // namespace marovia
