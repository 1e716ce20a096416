// The order of the second ASWDR version, read plainly: every score a number, every line a queue.
#pragma once

#include <deque>

#include "tests/support/plain_codec.h"

namespace marovia::plain {

class RankedVisits final : public Visits {
 public:
  RankedVisits(int levels, int rows, int cols);

  // The first of the highest line.
  std::optional<Position> Next() override;
  // Its neighbours, its like in the other bands and its children rise.
  void Found(Position p) override;
  // In the order of discovery.
  [[nodiscard]] const Positions& Refined() const override { return foundInOrder_; }
  // Every coefficient that is not found waits in the line of its score.
  void EndPass(const Grid<float>& quantized) override;

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
  Positions resting_;
  Grid<int> score_;
  Grid<int> visited_;  // in this pass, or found before it
  std::array<std::deque<Position>, 16> lines_;
  Positions foundInOrder_;
};

}  // namespace marovia::plain
