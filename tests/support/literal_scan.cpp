#include "tests/support/literal_scan.h"

#include "base/checked.h"

namespace marovia::literal {
namespace {

// The r x c block that starts at `corner`, entered there and left for `next`.
struct Band {
  Position corner;
  int rows = 0;
  int cols = 0;
  Position next;
};

void RowSnake(ScanOrder& order, const Band& band) {
  Position p = band.corner;
  for (int i = 0; i < band.rows; ++i) {
    const int step = i % 2 == 0 ? 1 : -1;
    for (int j = 1; j < band.cols; ++j) {
      order.Link(p, {p.row, p.col + step});
      p.col += step;
    }
    const bool last = i == band.rows - 1;
    order.Link(p, last ? band.next : Position{p.row + 1, p.col});
    ++p.row;
  }
}

void ColumnSnake(ScanOrder& order, const Band& band) {
  Position p = band.corner;
  for (int j = 0; j < band.cols; ++j) {
    const int step = j % 2 == 0 ? 1 : -1;
    for (int i = 1; i < band.rows; ++i) {
      order.Link(p, {p.row + step, p.col});
      p.row += step;
    }
    const bool last = j == band.cols - 1;
    order.Link(p, last ? band.next : Position{p.row, p.col + 1});
    ++p.col;
  }
}

void ZigZag(ScanOrder& order, const Band& band) {
  ScanOrder block(band.rows, band.cols);
  GetZigZag(block, band.rows - 1, band.cols - 1);
  for (int i = 0; i < band.rows; ++i) {
    for (int j = 0; j < band.cols; ++j) {
      const Position next = block.Next({i, j});
      order.Link({band.corner.row + i, band.corner.col + j},
                 {band.corner.row + next.row, band.corner.col + next.col});
    }
  }
  order.Link({band.corner.row + band.rows - 1, band.corner.col + band.cols - 1}, band.next);
}

// Links `tail` to the positions outside the top left gridRows x gridCols, in raster order.
void LinkLeftovers(ScanOrder& order, Position tail, int gridRows, int gridCols) {
  for (int r = 0; r < order.NextRow.Rows(); ++r) {
    for (int c = 0; c < order.NextRow.Cols(); ++c) {
      if (r < gridRows && c < gridCols) continue;
      order.Link(tail, {r, c});
      tail = {r, c};
    }
  }
  order.Link(tail, tail);
}

void LinkLeftovers(ScanOrder& order, Position tail, int levels) {
  LinkLeftovers(order, tail, (order.NextRow.Rows() >> levels) << levels,
                (order.NextRow.Cols() >> levels) << levels);
}

// The three detail bands around the r x c corner, from `first` on; returns their last position.
Position LinkLevel(ScanOrder& order, int r, int c, bool lowerFirst) {
  const Position diagonal{r, c};
  const Position lower{r, 0};
  const Position right{0, c};
  RowSnake(order, {lower, r, c, lowerFirst ? right : diagonal});
  ColumnSnake(order, {right, r, c, lowerFirst ? diagonal : lower});
  ZigZag(order, {diagonal, r, c, lowerFirst ? Position{2 * r, 0} : Position{0, 2 * c}});
  return {2 * r - 1, 2 * c - 1};
}

ScanOrder Create(int levels, int rows, int cols, bool lowerFirst) {
  ScanOrder order(rows, cols);
  if (levels < 1) {
    LinkLeftovers(order, {0, 0}, 0, 0);
    return order;
  }
  int r = rows >> levels;
  int c = cols >> levels;
  ZigZag(order, {{0, 0}, r, c, lowerFirst ? Position{r, 0} : Position{0, c}});
  Position tail;
  for (int k = 1; k <= levels; ++k) {
    tail = LinkLevel(order, r, c, lowerFirst);
    r *= 2;
    c *= 2;
  }
  LinkLeftovers(order, tail, levels);
  return order;
}

// The list of the next finer level while it is built.
struct NewScan {
  Position head;
  Position tail;
  bool firstChild = true;
};

void AssignNewScanValues(int bandCode, ScanOrder& order, NewScan& scan, Position parent) {
  const int a = 2 * parent.row;
  const int b = 2 * parent.col;
  const Position children[3][4] = {
      {{a, b}, {a, b + 1}, {a + 1, b + 1}, {a + 1, b}},
      {{a, b}, {a + 1, b}, {a + 1, b + 1}, {a, b + 1}},
      {{a, b}, {a + 1, b}, {a, b + 1}, {a + 1, b + 1}},
  };
  for (const Position child : children[bandCode - 1]) {
    if (scan.firstChild) {
      scan.head = child;
      scan.firstChild = false;
    } else {
      order.Link(scan.tail, child);
    }
    scan.tail = child;
  }
}

bool HasFoundChild(const Grid<float>& quantized, Position p) {
  return quantized(2 * p.row, 2 * p.col) != 0 || quantized(2 * p.row, 2 * p.col + 1) != 0 ||
         quantized(2 * p.row + 1, 2 * p.col) != 0 || quantized(2 * p.row + 1, 2 * p.col + 1) != 0;
}

int GroupOf(const Grid<float>& quantized, Position p, float threshold) {
  if (quantized(p.row, p.col) >= threshold || -quantized(p.row, p.col) >= threshold) return 1;
  return HasFoundChild(quantized, p) ? 2 : 3;
}

}  // namespace

void ScanOrder::Link(Position from, Position to) {
  NextRow(from.row, from.col) = ToInt16(to.row);
  NextCol(from.row, from.col) = ToInt16(to.col);
}

void GetZigZag(ScanOrder& order, int lastRow, int lastCol) {
  const auto linkInside = [&](Position from, Position to) {
    const bool inside = from.row <= lastRow && from.col <= lastCol && to.row >= 0 &&
                        to.row <= lastRow && to.col >= 0 && to.col <= lastCol;
    if (inside) order.Link(from, to);
  };
  for (int d = 0; d < lastRow + lastCol; ++d) {
    if (d % 2 == 0) {
      for (int i = 0; i <= d; ++i) linkInside({i, d - i}, {i + 1, d - i - 1});
      if (d >= lastRow) order.Link({lastRow, d - lastRow}, {lastRow, d - lastRow + 1});
      if (d < lastRow) order.Link({d, 0}, {d + 1, 0});
    } else {
      for (int j = 0; j <= d; ++j) linkInside({d - j, j}, {d - j - 1, j + 1});
      if (d >= lastCol) order.Link({d - lastCol, lastCol}, {d - lastCol + 1, lastCol});
      if (d < lastCol) order.Link({0, d}, {0, d + 1});
    }
  }
  order.Link({lastRow, lastCol}, {lastRow, lastCol});
}

ScanOrder CreateScanOrderHF(int levels, int rows, int cols) {
  return Create(levels, rows, cols, true);
}

ScanOrder CreateScanOrder(int levels, int rows, int cols) {
  return Create(levels, rows, cols, false);
}

void CreateNewScanOrder(ScanOrder& order, const Grid<float>& quantized, int levels,
                        float threshold) {
  if (levels < 2) return;
  int h = quantized.Rows() >> levels;
  int w = quantized.Cols() >> levels;
  int n = 3 * h * w;
  NewScan scan;
  scan.head = {0, w};
  for (int level = 1; level < levels; ++level) {
    const Position start = scan.head;
    Position last;
    scan.firstChild = true;
    for (int group = 1; group <= 3; ++group) {
      Position p = start;
      for (int step = 0; step < n; ++step) {
        const int bandCode = p.row < h ? 2 : p.col < w ? 1 : 3;
        if (GroupOf(quantized, p, threshold) == group) {
          AssignNewScanValues(bandCode, order, scan, p);
        }
        last = p;
        p = order.Next(p);
      }
    }
    order.Link(last, scan.head);
    n *= 4;
    h *= 2;
    w *= 2;
  }
  LinkLeftovers(order, scan.tail, levels);
}

}  // namespace marovia::literal
