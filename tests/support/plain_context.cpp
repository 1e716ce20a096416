#include "tests/support/plain_context.h"

#include "context/context_bands.h"
#include "context/range_coder.h"
#include "tests/support/testing.h"
#include "wavelet/catalogue.h"

namespace marovia::plain {
namespace {

struct End {};  // thrown where a stream leaves a decision open

struct Cell {
  std::int32_t v = 0;  // the coefficient, a writer's
  std::int64_t value = 0;
  int score = 0;
  int known = 0;
  int sign = 0;  // 0: not found
  bool visited = false;
  bool refined = false;
};

struct BandCells : ContextBand {
  explicit BandCells(const ContextBand& band) : ContextBand(band), cells(rows, cols) {}
  Cell& At(int r, int c) {
    const bool inside = r >= 0 && c >= 0 && r < rows && c < cols;
    return inside ? cells(r, c) : outside = {};
  }
  Grid<Cell> cells;
  Cell outside;
};

struct Cells {
  explicit Cells(const ContextHeader& header) : levels(header.levels), plane(header.planes - 1) {
    for (const ContextBand& band : ContextBands(header)) bands.emplace_back(band);
  }
  // The magnitude that a reader would take, scaled.
  [[nodiscard]] std::int64_t Guess(const BandCells& band, const Cell& cell) const {
    const bool open = plane >= band.shift && !cell.visited;
    const int unknown = std::max(plane, band.shift) + (open ? 1 : 0);
    return cell.value + ((std::int64_t{cell.refined ? 15 : 13} << unknown) >> 5);
  }
  int levels;
  int plane;
  std::vector<BandCells> bands;
};

void EachCell(BandCells& band, auto action) {
  for (int r = 0; r < band.rows; ++r) {
    for (int c = 0; c < band.cols; ++c) action(r, c, band.cells(r, c));
  }
}

template <class Coder>
class Plane {
 public:
  Plane(Cells& cells, Counters& counters, Coder& coder)
      : plane_(cells.plane), cells_(cells), counters_(counters), coder_(coder) {}

  void Run(auto beforePass) {
    EachBand([&](BandCells& band) {
      EachCell(band, [](int, int, Cell& cell) {
        cell.visited = false;
        cell.known = std::min(8, 2 * cell.known);
      });
    });
    const auto pass = [&](auto walk) {
      beforePass();
      EachBand(walk);
    };
    const auto sweep = [&](int least) { pass([=, this](BandCells& band) { Sweep(band, least); }); };
    for (const int least : {10, 7, 3}) sweep(least);
    pass([&](BandCells& band) {
      EachCell(band, [&](int r, int c, Cell& cell) {
        if (cell.sign != 0 && !cell.visited) Refine(band, r, c, cell);
      });
    });
    sweep(1);
    pass([&](BandCells& band) {
      for (int r = 0; r < band.rows; r += 8) {
        for (int c = 0; c < band.cols; c += 8) Tile(band, r, c);
      }
    });
  }

 private:
  void EachBand(auto walk) {
    for (BandCells& band : cells_.bands) {
      if (plane_ >= band.shift) walk(band);
    }
  }

  template <Pace kLimits = kPace>
  bool Decide(Counter& counter, bool bit) {
    bit = coder_.template Decide<kLimits>(counter, bit);
    if (coder_.Ended()) throw End();
    return bit;
  }

  [[nodiscard]] bool Bit(const BandCells& band, const Cell& cell) const {
    return ((std::int64_t{std::abs(cell.v)} << band.shift) >> plane_ & 1) != 0;
  }

  void Sweep(BandCells& band, int least) {
    EachCell(band, [&](int r, int c, Cell& cell) {
      if (cell.sign == 0 && !cell.visited && cell.score >= least) Find(band, r, c);
    });
  }

  void Tile(BandCells& band, int row, int col) {
    std::vector<std::pair<int, int>> members;
    bool some = false;
    bool scored = false;
    for (int i = 0; i < 64; ++i) {
      const Cell& cell = band.At(row + i / 8, col + i % 8);
      if (&cell == &band.outside || cell.sign != 0 || cell.visited) continue;
      members.emplace_back(row + i / 8, col + i % 8);
      some = some || Bit(band, cell);
      scored = scored || cell.score > 0;
    }
    if (members.empty() || !Decide<kTilePace>(counters_.tile[scored ? 1 : 0], some)) return;
    const auto [lastRow, lastCol] = members.back();
    members.pop_back();
    bool found = false;
    for (const auto& [r, c] : members) found = Find(band, r, c) || found;
    found ? static_cast<void>(Find(band, lastRow, lastCol)) : Take(band, lastRow, lastCol);
  }

  bool Find(BandCells& band, int r, int c) {
    Cell& cell = band.At(r, c);
    auto& counters =
        counters_.find[Counters::FindPlace(band.kind == BandKind::kDiagonal, band.level)];
    const auto score = static_cast<std::size_t>(cell.score);
    cell.visited = true;
    if (!Decide(counters[kClassOfScore[score]], Bit(band, cell))) return false;
    Take(band, r, c);
    return true;
  }

  void Take(BandCells& band, int r, int c) {
    Cell& cell = band.At(r, c);
    const auto sum = [](const Cell& a, const Cell& b) {
      return static_cast<std::size_t>(a.sign + b.sign + 2);
    };
    const SignPlace place = kSignPlaces[sum(Cell(band.At(r, c - 1)), band.At(r, c + 1))]
                                       [sum(Cell(band.At(r - 1, c)), band.At(r + 1, c))];
    Counter& counter = counters_.sign[static_cast<std::size_t>(band.kind)][place.place];
    const bool opposite = place.opposite != 0;
    cell.sign = Decide(counter, (cell.v < 0) != opposite) != opposite ? -1 : 1;
    cell.value = std::int64_t{1} << plane_;
    cell.known = 1;
    cell.visited = true;
    RaiseOwnBand(band, r, c);
    RaiseOtherBands(band, r, c);
  }

  static void RaiseOwnBand(BandCells& band, int r, int c) {
    const bool vertical = band.kind == BandKind::kRight;
    const bool even = band.kind == BandKind::kLow || band.kind == BandKind::kDiagonal;
    const int along = even ? 5 : 12;
    const int across = even ? 5 : 4;
    for (const int d : {-1, 1}) {
      band.At(r + d, c).score += vertical ? along : across;
      band.At(r, c + d).score += vertical ? across : along;
      band.At(r + 2 * d, c).score += vertical ? 3 : 1;
      band.At(r, c + 2 * d).score += even || vertical ? 1 : 3;
      for (const int e : {-1, 1}) band.At(r + d, c + e).score += even ? 3 : 2;
    }
  }

  void RaiseOtherBands(const BandCells& band, int r, int c) {
    if (cells_.levels == 0) return;
    constexpr int kSamePlace[4][3] = {{4, 4, 4}, {0, 2, 4}, {2, 0, 4}, {6, 6, 0}};
    const auto kind = static_cast<std::size_t>(band.kind);
    BandCells* level =
        &cells_.bands[static_cast<std::size_t>(3 * (cells_.levels - band.level)) + 1];
    for (int other = 0; other < 3; ++other) level[other].At(r, c).score += kSamePlace[kind][other];
    if (kind == 0 || band.level == 1) return;
    for (int i = -2; i <= 3; ++i) {
      for (int j = -2; j <= 3; ++j) {
        const int amount = (i == 0 || i == 1 ? 1 : 0) + (j == 0 || j == 1 ? 1 : 0);
        level[2 + kind].At(2 * r + i, 2 * c + j).score += amount;
      }
    }
  }

  void Refine(BandCells& band, int r, int c, Cell& cell) {
    int sum = 0;
    for (int i = -1; i <= 1; ++i) {
      for (int j = -1; j <= 1; ++j) {
        if (i != 0 || j != 0) sum += band.At(r + i, c + j).known * (i == 0 || j == 0 ? 2 : 1);
      }
    }
    std::size_t place = cell.known == 2 ? 0 : 8;
    for (const int bound : {8, 11, 16, 22, 31, 43, 60}) place += bound <= sum ? 1 : 0;
    const std::uint32_t even = cell.known == 8 ? 0xFFFFFFFF : 0;
    const std::uint32_t ones = Bit(band, cell) ? 0xFFFFFFFF : 0;
    if (even != 0) place = kEvenPlace;
    const bool bit = coder_.DecideBlindly(counters_.refine[place], even, ones) != 0;
    if (coder_.Ended()) throw End();
    if (bit) cell.value += std::int64_t{1} << plane_;
    if (bit && even == 0) ++cell.known;
    cell.refined = true;
    cell.visited = true;
  }

  int plane_;
  Cells& cells_;
  Counters& counters_;
  Coder& coder_;
};

// Whether all planes ended. beforePass() is called before each pass.
template <class Coder>
bool AllPlanes(Cells& cells, Coder& coder, auto beforePass) {
  Counters counters;
  try {
    for (; cells.plane >= 0; --cells.plane) Plane(cells, counters, coder).Run(beforePass);
  } catch (const End&) {
    return false;
  }
  cells.plane = 0;
  return true;
}

template <class Sample>
constexpr int kUnits = std::is_same_v<Sample, float> ? 16 : 1;

template <class Sample>
void Transform(const Image& image, const ContextHeader& header, Cells& cells) {
  ForwardBands<Sample>(image, header, [&](std::size_t band, int r, std::span<const Sample> row) {
    const auto to = cells.bands[band].cells.Row(r);
    for (std::size_t c = 0; c < row.size(); ++c) {
      to[c].v = static_cast<std::int32_t>(row[c] * kUnits<Sample>);
    }
  });
}

template <class Sample>
Image Picture(const ContextHeader& header, Cells& cells) {
  return InvertBands<Sample>(header, [&](std::size_t i, int r, std::span<Sample> row) {
    BandCells& band = cells.bands[i];
    for (std::size_t c = 0; c < row.size(); ++c) {
      const Cell& cell = band.cells.Row(r)[c];
      const auto magnitude = static_cast<std::int32_t>(cells.Guess(band, cell) >> band.shift);
      const std::int32_t v = cell.sign * magnitude + (i == 0 ? header.mean : 0);
      row[c] = static_cast<Sample>(v) / kUnits<Sample>;
    }
  });
}

// Takes the mean off the low band; fills in the header's mean and planes.
void Settle(Cells& cells, ContextHeader& header) {
  std::int64_t sum = 0;
  BandCells& low = cells.bands.front();
  for (const Cell& cell : low.cells.Samples()) sum += cell.v;
  const double mean = static_cast<double>(sum) / static_cast<double>(low.cells.Size());
  header.mean = static_cast<std::int32_t>(std::floor(mean + 0.5));
  for (Cell& cell : low.cells.Samples()) cell.v -= header.mean;
  for (const BandCells& band : cells.bands) {
    for (const Cell& cell : band.cells.Samples()) {
      while ((std::int64_t{std::abs(cell.v)} << band.shift) >> header.planes != 0) ++header.planes;
    }
  }
  cells.plane = header.planes - 1;
}

// What a reader takes the coefficients outside the region for is what they are from now on.
void FreezeOutside(Cells& cells, const Region& region) {
  for (BandCells& band : cells.bands) {
    const Region needed = RegionOfBand(region, band);
    EachCell(band, [&](int r, int c, Cell& cell) {
      if (r >= needed.row1 && r <= needed.row2 && c >= needed.col1 && c <= needed.col2) return;
      const auto guess = static_cast<std::int32_t>(cells.Guess(band, cell) >> band.shift);
      cell.v = cell.sign * guess;
    });
  }
}

}  // namespace

Bytes EncodeContext(const Image& image, const ContextOptions& options) {
  ContextHeader header{.wavelet = options.wavelet, .rows = image.Rows(), .cols = image.Cols()};
  header.levels = std::min(*options.levels, ContextLevelLimit(header.rows, header.cols));
  Cells cells(header);
  IsInteger(header.wavelet) ? Transform<std::int32_t>(image, header, cells)
                            : Transform<float>(image, header, cells);
  Settle(cells, header);
  Bytes file;
  AppendContextHeader(file, header);
  RangeOutput output(file, INT64_MAX);
  RangeWriter coder(output);
  bool frozen = !options.region || options.bytes == 0;
  AllPlanes(cells, coder, [&] {
    const double due = (1.0 - double{options.share}) * static_cast<double>(options.bytes - 16);
    if (frozen || static_cast<double>(output.Settled() - 16) < due) return;
    FreezeOutside(cells, *options.region);
    frozen = true;
  });
  if (header.planes > 0) coder.Finish();
  if (options.bytes > 0) {
    file.resize(std::min(file.size(), static_cast<std::size_t>(options.bytes)));
  }
  return file;
}

ContextPicture DecodeContext(ByteView file) {
  const ContextHeader header = ReadContextHeader(file);
  RangeReader coder(file.subspan(kContextHeaderBytes));
  Cells cells(header);
  const bool complete = AllPlanes(cells, coder, [] {});
  return {IsInteger(header.wavelet) ? Picture<std::int32_t>(header, cells)
                                    : Picture<float>(header, cells),
          header,
          complete,
          {}};
}

}  // namespace marovia::plain
