// The scan orders as links from each position to the next, built and rebuilt link by link.
#pragma once

#include <cstdint>

#include "marovia/grid.h"

namespace marovia::literal {

struct Position {
  int row = 0;
  int col = 0;

  friend bool operator==(const Position&, const Position&) = default;
};

// A walk starts at (0, 0) and visits every position once in rows x cols steps.
struct ScanOrder {
  ScanOrder(int rows, int cols) : NextRow(rows, cols), NextCol(rows, cols) {}

  [[nodiscard]] Position Next(Position p) const {
    return {NextRow(p.row, p.col), NextCol(p.row, p.col)};
  }
  void Link(Position from, Position to);

  Grid<std::int16_t> NextRow;
  Grid<std::int16_t> NextCol;
};

// The diagonal walk over rows 0 to lastRow and columns 0 to lastCol; its first step goes down.
void GetZigZag(ScanOrder& order, int lastRow, int lastCol);

// Low band, then level by level from the coarsest: lower, right, diagonal band (HF), or right,
// lower, diagonal. Positions that belong to no band, where a side is no multiple of 2^levels, come
// last, row by row; without levels all do.
ScanOrder CreateScanOrderHF(int levels, int rows, int cols);
ScanOrder CreateScanOrder(int levels, int rows, int cols);

// Reorders each level behind the coarsest: the children of parents of at least `threshold` first,
// then those among which one is found, then the rest.
void CreateNewScanOrder(ScanOrder& order, const Grid<float>& quantized, int levels,
                        float threshold);

}  // namespace marovia::literal
