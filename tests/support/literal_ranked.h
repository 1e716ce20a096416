// The order of the second ASWDR version, read plainly: every score a number, every line a queue.
#pragma once

#include <array>
#include <deque>
#include <optional>
#include <vector>

#include "marovia/grid.h"

#include "tests/support/literal_scan.h"

namespace marovia::literal {

class RankedWalk {
 public:
  RankedWalk(int levels, int rows, int cols);

  // Every coefficient that is not found waits in the line of its score.
  void BeginPass();
  // The next one to visit in this pass; none where all lines are empty.
  std::optional<Position> Next();
  // The one visited last is found: its neighbours, its like in the other bands and its children
  // rise.
  void Find(Position p);
  // In the order of discovery.
  [[nodiscard]] const std::vector<Position>& Found() const { return foundInOrder_; }

 private:
  enum class Band { kLow, kRight, kLower, kDiagonal, kNone };
  struct Place {
    Band band = Band::kNone;
    Position corner;  // of its band
    int rows = 0;     // of its band
    int cols = 0;
  };

  [[nodiscard]] Place PlaceOf(Position p) const;
  void AppendRaster(Position corner, int rows, int cols);
  void Raise(Position p, int amount);
  void RaiseNeighbours(Position p, const Place& place);

  int levels_;
  int lowRows_;
  int lowCols_;
  std::vector<Position> resting_;
  Grid<int> score_;
  Grid<int> found_;
  Grid<int> visited_;
  std::array<std::deque<Position>, 16> lines_;
  std::vector<Position> foundInOrder_;
};

}  // namespace marovia::literal
