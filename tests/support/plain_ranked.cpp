#include "tests/support/plain_ranked.h"

namespace marovia::plain {

RankedVisits::RankedVisits(int levels, int rows, int cols)
    : levels_(levels),
      lowRows_(levels > 0 ? rows >> levels : 0),
      lowCols_(levels > 0 ? cols >> levels : 0),
      score_(rows, cols),
      visited_(rows, cols) {
  AppendRaster({0, 0}, lowRows_, lowCols_);
  std::size_t parent = resting_.size();
  AppendRaster({0, lowCols_}, lowRows_, lowCols_);
  AppendRaster({lowRows_, 0}, lowRows_, lowCols_);
  AppendRaster({lowRows_, lowCols_}, lowRows_, lowCols_);
  for (int level = 2; level <= levels; ++level) {
    for (const std::size_t end = resting_.size(); parent < end; ++parent) {
      const Position p = resting_[parent];
      AppendRaster({2 * p.row, 2 * p.col}, 2, 2);
    }
  }
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < cols; ++c) {
      if (PlaceOf({r, c}).band == Band::kNone) resting_.push_back({r, c});
    }
  }
  EndPass(Grid<float>(rows, cols));
}

void RankedVisits::AppendRaster(Position corner, int rows, int cols) {
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < cols; ++c) resting_.push_back({corner.row + r, corner.col + c});
  }
}

RankedVisits::Place RankedVisits::PlaceOf(Position p) const {
  int rows = lowRows_;
  int cols = lowCols_;
  if (p.row < rows && p.col < cols) return {Band::kLow, {0, 0}, rows, cols};
  for (int level = 1; level <= levels_; ++level, rows *= 2, cols *= 2) {
    if (p.row >= 2 * rows || p.col >= 2 * cols) continue;
    if (p.row < rows) return {Band::kRight, {0, cols}, rows, cols};
    if (p.col < cols) return {Band::kLower, {rows, 0}, rows, cols};
    return {Band::kDiagonal, {rows, cols}, rows, cols};
  }
  return {};
}

void RankedVisits::EndPass(const Grid<float>& quantized) {
  for (const Position p : resting_) {
    visited_(p.row, p.col) = quantized(p.row, p.col) != 0 ? 1 : 0;
    Raise(p, 0);
  }
}

std::optional<Position> RankedVisits::Next() {
  for (int line = 15; line >= 0; --line) {
    auto& waiting = lines_[static_cast<std::size_t>(line)];
    while (!waiting.empty()) {
      const Position p = waiting.front();
      waiting.pop_front();
      if (visited_(p.row, p.col) != 0 || score_(p.row, p.col) != line) continue;
      visited_(p.row, p.col) = 1;
      return p;
    }
  }
  return {};
}

void RankedVisits::Found(Position p) {
  foundInOrder_.push_back(p);
  const Place place = PlaceOf(p);
  if (place.band == Band::kNone) return;
  RaiseNeighbours(p, place);
  if (place.band == Band::kLow) return;

  const int r = p.row - place.corner.row;
  const int c = p.col - place.corner.col;
  if (place.band != Band::kRight) Raise({r, place.cols + c}, 1);
  if (place.band != Band::kLower) Raise({place.rows + r, c}, 1);
  if (place.band != Band::kDiagonal) Raise({place.rows + r, place.cols + c}, 1);

  if (PlaceOf({2 * p.row, 2 * p.col}).band == Band::kNone) return;
  for (int i = 0; i < 4; ++i) Raise({2 * p.row + i / 2, 2 * p.col + i % 2}, 1);
}

void RankedVisits::RaiseNeighbours(Position p, const Place& place) {
  int upright = 2;
  if (place.band == Band::kRight) upright = 3;
  if (place.band == Band::kLower) upright = 1;
  for (int dr = -1; dr <= 1; ++dr) {
    for (int dc = -1; dc <= 1; ++dc) {
      const int r = p.row - place.corner.row + dr;
      const int c = p.col - place.corner.col + dc;
      if (r < 0 || r >= place.rows || c < 0 || c >= place.cols || (dr == 0 && dc == 0)) continue;
      const int amount = std::abs(dr) + std::abs(dc) == 2 ? 1 : dc == 0 ? upright : 4 - upright;
      Raise({p.row + dr, p.col + dc}, amount);
    }
  }
}

void RankedVisits::Raise(Position p, int amount) {
  int& score = score_(p.row, p.col);
  score += amount;
  if (visited_(p.row, p.col) == 0) lines_[static_cast<std::size_t>(score)].push_back(p);
}

}  // namespace marovia::plain
