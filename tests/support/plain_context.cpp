#include "tests/support/plain_context.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdlib>

#include "context/context_bands.h"
#include "wavelet/catalogue.h"

namespace marovia::plain {
namespace {

struct Counter {
  std::uint32_t quick = 32768;
  std::uint32_t slow = 32768;
  std::uint32_t seen = 0;
  std::uint32_t mostQuick = 30;
  std::uint32_t mostSeen = 510;

  [[nodiscard]] std::uint32_t Probability() const {
    return std::clamp((quick + slow) >> 1, 32U, 65504U);
  }
  void Learn(bool bit) {
    seen = std::min(seen + 1, mostSeen);
    for (auto [estimate, n] : {std::pair(&quick, std::min(seen, mostQuick)), {&slow, seen}}) {
      const std::uint32_t weight = 131072 / (2 * n + 3);
      bit ? * estimate += (65535 - *estimate)* weight >> 16
          : * estimate -= *estimate * weight >> 16;
    }
  }
};

struct End {};

// Both directions of the range coder. A reader takes its bits from the file, and throws End at the
// first that the file leaves open; a writer at its budget.
class Coder {
 public:
  Coder(Bytes& file, std::int64_t limit) : writes(true), out_(&file), limit_(limit) {}
  explicit Coder(ByteView stream) : writes(false), in_(stream) {
    for (int i = 0; i < 4; ++i) TakeByte();
  }

  bool Code(Counter& counter, bool bit) {
    bit = CodeBelow((range_ >> 16) * counter.Probability(), bit);
    counter.Learn(bit);
    return bit;
  }
  bool CodeEven(bool bit) { return CodeBelow(range_ >> 1, bit); }

  void Finish() {
    for (int n = 1; n <= 4; ++n) {
      const std::uint64_t unit = std::uint64_t{1} << (32 - 8 * n);
      const std::uint64_t value = (low_ + unit - 1) / unit * unit;
      if (value + unit > low_ + range_) continue;
      low_ = value;
      for (; n > 0; --n) ShiftOut();
      break;
    }
    if (held_ >= 0) Emit(held_);
    for (; waiting_ > 0; --waiting_) Emit(255);
  }

  const bool writes;

 private:
  bool CodeBelow(std::uint32_t bound, bool bit) {
    if (!writes) {
      bit = code_ < bound;
      if (bit && std::uint64_t{code_} + unknown_ >= bound) throw End();
    }
    if (bit) {
      range_ = bound;
    } else {
      writes ? low_ += bound : code_ -= bound;
      range_ -= bound;
    }
    for (; range_ < 1U << 24; range_ <<= 8) writes ? ShiftOut() : TakeByte();
    if (writes && static_cast<std::int64_t>(out_->size()) >= limit_) throw End();
    return bit;
  }
  void TakeByte() {
    code_ = code_ << 8 | (at_ < in_.size() ? in_[at_] : 0U);
    unknown_ = unknown_ << 8 | (at_ < in_.size() ? 0U : 255U);
    ++at_;
  }
  void ShiftOut() {
    const int carry = static_cast<int>(low_ >> 32);
    const int next = static_cast<int>(low_ >> 24 & 255);
    low_ = (low_ & 0xFFFFFF) << 8;
    if (carry == 0 && next == 255) {
      ++waiting_;
      return;
    }
    if (held_ >= 0) Emit(held_ + carry);
    for (; waiting_ > 0; --waiting_) Emit(255 + carry);
    held_ = next;
  }
  void Emit(int byte) { out_->push_back(static_cast<std::uint8_t>(byte)); }

  Bytes* out_ = nullptr;
  std::int64_t limit_ = 0;
  ByteView in_;
  std::size_t at_ = 0;
  std::uint64_t low_ = 0;
  std::uint32_t range_ = 0xFFFFFFFF;
  std::uint32_t code_ = 0;
  std::uint32_t unknown_ = 0;
  int held_ = -1;
  int waiting_ = 0;
};

struct Cell {
  std::uint32_t magnitude = 0;  // scaled; a writer's
  bool negative = false;
  std::uint32_t value = 0;
  int score = 0;
  int known = 0;
  int sign = 0;  // 0: not found
  bool visited = false;
  bool refined = false;
};

struct BandCells : ContextBand {
  explicit BandCells(const ContextBand& band)
      : ContextBand(band), cells(static_cast<std::size_t>(rows * cols)) {}
  Cell& At(int r, int c) {
    if (r < 0 || c < 0 || r >= rows || c >= cols) return outside = {};
    return cells[static_cast<std::size_t>(r * cols + c)];
  }
  std::vector<Cell> cells;
  Cell outside;
};

int ClassOf(int value, std::initializer_list<int> bounds) {
  return static_cast<int>(std::ranges::count_if(bounds, [&](int bound) { return bound <= value; }));
}

struct Counters {
  Counters() {
    constexpr std::array<std::uint32_t, 18> kStarts = {1,  2,  4,  10,  12,  13,  20,  33,  37,
                                                       52, 76, 92, 100, 106, 112, 115, 120, 125};
    for (auto& diagonal : find) {
      for (auto& level : diagonal) {
        for (std::size_t i = 0; i < 18; ++i) level[i] = {256 * kStarts[i], 256 * kStarts[i], 6};
      }
    }
    for (Counter& counter : tile) counter = {32768, 32768, 0, 14, 62};
  }
  Counter find[2][4][18];
  Counter sign[4][6];
  Counter refine[2][8];
  Counter tile[2];
};

class Run {
 public:
  Run(const ContextHeader& header, Coder& coder) : levels_(header.levels), coder_(coder) {
    for (const ContextBand& band : ContextBands(header)) bands.emplace_back(band);
  }

  // Whether all planes ended. beforePass() is called before each pass.
  bool AllPlanes(int planes, auto beforePass) {
    try {
      for (plane = planes - 1; plane >= 0; --plane) Plane(beforePass);
    } catch (const End&) {
      return false;
    }
    plane = 0;
    return true;
  }

  // The magnitude that a reader would take, scaled.
  [[nodiscard]] std::uint32_t Guess(const BandCells& band, const Cell& cell) const {
    const int last = std::max(plane, band.shift);
    const bool open = plane >= band.shift && !cell.visited;
    const std::uint64_t width = std::uint64_t{1} << (open ? last + 1 : last);
    return cell.value + static_cast<std::uint32_t>(width * (cell.refined ? 15 : 13) >> 5);
  }

  std::vector<BandCells> bands;
  int plane = 0;

 private:
  void Plane(auto beforePass) {
    for (BandCells& band : bands) {
      if (plane < band.shift) continue;
      for (Cell& cell : band.cells) {
        cell.visited = false;
        cell.known = std::min(8, 2 * cell.known);
      }
    }
    const auto eachBand = [&](auto pass) {
      beforePass();
      for (BandCells& band : bands) {
        if (plane >= band.shift) pass(band);
      }
    };
    for (const int least : {10, 7, 3}) eachBand([&](BandCells& band) { Sweep(band, least); });
    eachBand([&](BandCells& band) { EachCell(band, [&](int r, int c) { Refine(band, r, c); }); });
    eachBand([&](BandCells& band) { Sweep(band, 1); });
    eachBand([&](BandCells& band) {
      for (int r = 0; r < band.rows; r += 8) {
        for (int c = 0; c < band.cols; c += 8) Tile(band, r, c);
      }
    });
  }

  static void EachCell(const BandCells& band, auto action) {
    for (int r = 0; r < band.rows; ++r) {
      for (int c = 0; c < band.cols; ++c) action(r, c);
    }
  }

  [[nodiscard]] bool Bit(const Cell& cell) const { return (cell.magnitude >> plane & 1) != 0; }

  void Sweep(BandCells& band, int least) {
    EachCell(band, [&](int r, int c) {
      const Cell& cell = band.At(r, c);
      if (cell.sign == 0 && !cell.visited && cell.score >= least) Find(band, r, c);
    });
  }

  void Tile(BandCells& band, int row, int col) {
    std::vector<std::pair<int, int>> members;
    bool some = false;
    bool scored = false;
    for (int r = row; r < std::min(row + 8, band.rows); ++r) {
      for (int c = col; c < std::min(col + 8, band.cols); ++c) {
        const Cell& cell = band.At(r, c);
        if (cell.sign != 0 || cell.visited) continue;
        members.emplace_back(r, c);
        some = some || Bit(cell);
        scored = scored || cell.score > 0;
      }
    }
    if (members.empty()) return;
    some = coder_.Code(counters_.tile[scored ? 1 : 0], some);
    bool found = false;
    for (const auto& [r, c] : members) {
      const bool last = r == members.back().first && c == members.back().second;
      if (!some) {
        band.At(r, c).visited = true;
      } else if (last && !found) {
        Found(band, r, c);
      } else if (Find(band, r, c)) {
        found = true;
      }
    }
  }

  bool Find(BandCells& band, int r, int c) {
    Cell& cell = band.At(r, c);
    const int level = std::clamp(band.level, 1, 3);
    const int score =
        ClassOf(cell.score, {1, 2, 3, 4, 5, 6, 8, 10, 12, 15, 18, 22, 26, 31, 36, 42, 48});
    Counter& counter = counters_.find[band.kind == BandKind::kDiagonal ? 1 : 0][level][score];
    if (!coder_.Code(counter, Bit(cell))) {
      cell.visited = true;
      return false;
    }
    Found(band, r, c);
    return true;
  }

  void Found(BandCells& band, int r, int c) {
    Cell& cell = band.At(r, c);
    const auto clamped = [](int sum) { return std::clamp(sum, -1, 1); };
    int h = clamped(band.At(r, c - 1).sign + band.At(r, c + 1).sign);
    int v = clamped(band.At(r - 1, c).sign + band.At(r + 1, c).sign);
    const bool negated = h < 0 || (h == 0 && v < 0);
    if (negated) h = -h, v = -v;
    Counter& counter = counters_.sign[static_cast<int>(band.kind)][h == 0 ? v : 3 + v];
    cell.sign = coder_.Code(counter, cell.negative != negated) != negated ? -1 : 1;
    cell.value = 1U << plane;
    cell.known = 1;
    cell.visited = true;
    RaiseOwnBand(band, r, c);
    RaiseOtherBands(band, r, c);
  }

  static void RaiseOwnBand(BandCells& band, int r, int c) {
    const bool low = band.kind == BandKind::kLow || band.kind == BandKind::kDiagonal;
    const std::array<int, 5> amounts = low ? std::array{5, 5, 3, 1, 1} : std::array{12, 4, 2, 3, 1};
    const auto [along, across, diagonal, twoAlong, twoAcross] = amounts;
    const bool vertical = band.kind == BandKind::kRight;
    for (const int sign : {-1, 1}) {
      band.At(r + sign, c).score += vertical ? along : across;
      band.At(r, c + sign).score += vertical ? across : along;
      band.At(r + 2 * sign, c).score += vertical ? twoAlong : twoAcross;
      band.At(r, c + 2 * sign).score += vertical ? twoAcross : twoAlong;
      band.At(r + sign, c - 1).score += diagonal;
      band.At(r + sign, c + 1).score += diagonal;
    }
  }

  void RaiseOtherBands(const BandCells& band, int r, int c) {
    const auto kind = static_cast<std::size_t>(band.kind);
    const std::size_t first = static_cast<std::size_t>(3 * (levels_ - band.level)) + 1;
    constexpr int kSamePlace[4][3] = {{4, 4, 4}, {0, 2, 4}, {2, 0, 4}, {6, 6, 0}};
    for (std::size_t other = 0; other < 3 && levels_ > 0; ++other) {
      bands[first + other].At(r, c).score += kSamePlace[kind][other];
    }
    if (kind == 0 || band.level == 1) return;
    BandCells& finer = bands[first + 3 + kind - 1];
    for (int i = -2; i <= 3; ++i) {
      for (int j = -2; j <= 3; ++j) {
        const bool rowInside = i == 0 || i == 1;
        const bool colInside = j == 0 || j == 1;
        finer.At(2 * r + i, 2 * c + j).score += (rowInside ? 1 : 0) + (colInside ? 1 : 0);
      }
    }
  }

  void Refine(BandCells& band, int r, int c) {
    Cell& cell = band.At(r, c);
    if (cell.sign == 0 || cell.visited) return;
    int sum = 0;
    for (const int i : {-1, 0, 1}) {
      for (const int j : {-1, 0, 1}) {
        if (i != 0 || j != 0) sum += band.At(r + i, c + j).known * (i == 0 || j == 0 ? 2 : 1);
      }
    }
    const int place = ClassOf(sum, {8, 11, 16, 22, 31, 43, 60});
    const bool bit = cell.known >= 8
                         ? coder_.CodeEven(Bit(cell))
                         : coder_.Code(counters_.refine[cell.known == 2 ? 0 : 1][place], Bit(cell));
    if (bit) cell.value += 1U << plane;
    if (bit && cell.known < 8) ++cell.known;
    cell.refined = true;
    cell.visited = true;
  }

  int levels_;
  Coder& coder_;
  Counters counters_;
};

template <class Sample>
std::vector<Grid<std::int32_t>> Coefficients(const Image& image, const ContextHeader& header) {
  constexpr int kUnits = std::is_same_v<Sample, float> ? 16 : 1;
  std::vector<Grid<std::int32_t>> bands;
  for (const ContextBand& band : ContextBands(header)) bands.emplace_back(band.rows, band.cols);
  ForwardBands<Sample>(image, header, [&](std::size_t band, int r, std::span<const Sample> row) {
    std::ranges::transform(row, bands[band].Row(r).begin(),
                           [](Sample x) { return static_cast<std::int32_t>(x * kUnits); });
  });
  return bands;
}

template <class Sample>
Image Picture(const ContextHeader& header, Run& run) {
  constexpr int kUnits = std::is_same_v<Sample, float> ? 16 : 1;
  return InvertBands<Sample>(header, [&](std::size_t i, int r, std::span<Sample> row) {
    BandCells& band = run.bands[i];
    for (int c = 0; c < band.cols; ++c) {
      const Cell& cell = band.At(r, c);
      const auto magnitude = static_cast<std::int32_t>(run.Guess(band, cell) >> band.shift);
      const std::int32_t v = magnitude * cell.sign + (i == 0 ? header.mean : 0);
      row[static_cast<std::size_t>(c)] = static_cast<Sample>(v) / kUnits;
    }
  });
}

bool Inside(const Region& region, int r, int c) {
  return r >= region.row1 && r <= region.row2 && c >= region.col1 && c <= region.col2;
}

// What a reader takes the coefficients outside the region for is what they are from now on.
void FreezeOutside(Run& run, const Region& region) {
  for (BandCells& band : run.bands) {
    const Region needed = RegionOfBand(region, band);
    for (int r = 0; r < band.rows; ++r) {
      for (int c = 0; c < band.cols; ++c) {
        Cell& cell = band.At(r, c);
        if (!Inside(needed, r, c)) cell.magnitude = cell.sign == 0 ? 0 : run.Guess(band, cell);
      }
    }
  }
}

}  // namespace

Bytes EncodeContext(const Image& image, const ContextOptions& options) {
  ContextHeader header{.wavelet = options.wavelet, .rows = image.Rows(), .cols = image.Cols()};
  header.levels = std::min(*options.levels, ContextLevelLimit(header.rows, header.cols));
  auto values = IsInteger(header.wavelet) ? Coefficients<std::int32_t>(image, header)
                                          : Coefficients<float>(image, header);
  const auto count = static_cast<std::int64_t>(values[0].Size());
  std::int64_t sum = 0;
  for (const std::int32_t v : values[0].Samples()) sum += v;
  header.mean = static_cast<std::int32_t>(
      std::floor(static_cast<double>(2 * sum + count) / static_cast<double>(2 * count)));
  for (std::int32_t& v : values[0].Samples()) v -= header.mean;

  const auto bands = ContextBands(header);
  std::uint32_t all = 0;
  for (std::size_t b = 0; b < bands.size(); ++b) {
    for (const std::int32_t v : values[b].Samples()) {
      all |= static_cast<std::uint32_t>(std::abs(v)) << bands[b].shift;
    }
  }
  header.planes = static_cast<int>(std::bit_width(all));
  Bytes file;
  AppendContextHeader(file, header);
  if (header.planes == 0) return file;

  Coder coder(file, options.bytes == 0 ? INT64_MAX : options.bytes);
  Run run(header, coder);
  for (std::size_t b = 0; b < bands.size(); ++b) {
    for (std::size_t i = 0; i < values[b].Size(); ++i) {
      const std::int32_t v = values[b].Samples()[i];
      run.bands[b].cells[i].magnitude = static_cast<std::uint32_t>(std::abs(v)) << bands[b].shift;
      run.bands[b].cells[i].negative = v < 0;
    }
  }
  bool frozen = !options.region || options.bytes == 0;
  const auto freeze = [&] {
    const auto settled = static_cast<double>(file.size() - kContextHeaderBytes);
    if (frozen || settled < options.share * static_cast<double>(options.bytes - 16)) return;
    FreezeOutside(run, *options.region);
    frozen = true;
  };
  if (run.AllPlanes(header.planes, freeze)) coder.Finish();
  if (options.bytes > 0 && std::ssize(file) > options.bytes) {
    file.resize(static_cast<std::size_t>(options.bytes));
  }
  return file;
}

ContextPicture DecodeContext(ByteView file) {
  const ContextHeader header = ReadContextHeader(file);
  Coder coder(file.subspan(kContextHeaderBytes));
  Run run(header, coder);
  const bool complete = run.AllPlanes(header.planes, [] {});
  return {
      IsInteger(header.wavelet) ? Picture<std::int32_t>(header, run) : Picture<float>(header, run),
      header, complete};
}

}  // namespace marovia::plain
