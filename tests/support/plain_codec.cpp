#include "tests/support/plain_codec.h"

#include <memory>

#include "base/checked.h"
#include "measures/region.h"
#include "tests/support/plain_ranked.h"
#include "tests/support/plain_symbols.h"
#include "wavelet/catalogue.h"
#include "wavelet/transform.h"

namespace marovia::plain {
namespace {

constexpr int kMostPasses = 32;
constexpr std::int32_t kNoBudget = std::numeric_limits<std::int32_t>::max();

enum class Scan { kFixed, kAdaptive, kRanked };

struct Rules {
  FileKind kind;
  Coding coding;
  Scan scan;
  // Bits counted for the header before the first bit of the stream.
  int charge;
  int regionCharge;
  int readerCharge;
};

constexpr std::array kRules = {
    Rules{FileKind::kAwb, Coding::kRaw, Scan::kFixed, 120, 120, 120},
    Rules{FileKind::kAwa, Coding::kWdr, Scan::kFixed, 136, 136, 120},
    Rules{FileKind::kAwd, Coding::kRaw, Scan::kAdaptive, 120, 120, 120},
    Rules{FileKind::kAwf, Coding::kAswdr, Scan::kAdaptive, 128, 136, 128},
    Rules{FileKind::kAwg, Coding::kAswdr, Scan::kAdaptive, 96, 96, 96},
    Rules{FileKind::kAwc, Coding::kRaw, Scan::kRanked, 120, 120, 120}};

const Rules& RulesOf(FileKind kind) {
  const auto* found = std::ranges::find(kRules, kind, &Rules::kind);
  if (found == kRules.end()) throw std::logic_error("no plain reading of this kind");
  return *found;
}

// Row by row, turning at every end; or column by column.
void AppendSnake(Positions& order, Position corner, int rows, int cols, bool byColumns) {
  const int length = byColumns ? rows : cols;
  for (int i = 0; i < rows * cols; ++i) {
    const int line = i / length;
    const int along = line % 2 == 0 ? i % length : length - 1 - i % length;
    order.push_back(
        {corner.row + (byColumns ? along : line), corner.col + (byColumns ? line : along)});
  }
}

// Along the anti-diagonals; the first step goes down.
void AppendDiagonals(Positions& order, Position corner, int rows, int cols) {
  for (int d = 0; d < rows + cols - 1; ++d) {
    for (int k = 0; k <= d; ++k) {
      const int r = d % 2 == 0 ? k : d - k;
      if (r < rows && d - r < cols) order.push_back({corner.row + r, corner.col + d - r});
    }
  }
}

// The children of a position in the order in which the band of the position is visited.
std::array<Position, 4> ChildrenOf(Position p, bool isLower, bool isRight) {
  const int r = 2 * p.row;
  const int c = 2 * p.col;
  if (isLower) return {{{r, c}, {r, c + 1}, {r + 1, c + 1}, {r + 1, c}}};
  if (isRight) return {{{r, c}, {r + 1, c}, {r + 1, c + 1}, {r, c + 1}}};
  return {{{r, c}, {r + 1, c}, {r, c + 1}, {r + 1, c + 1}}};
}

// Low band, then level by level from the coarsest, the lower or the right band first; positions
// that belong to no band, where a side is no multiple of 2^levels, come last, row by row; without
// levels all do.
Positions FirstOrder(int rows, int cols, int levels, bool lowerFirst) {
  Positions order;
  int r = levels > 0 ? rows >> levels : 0;
  int c = levels > 0 ? cols >> levels : 0;
  AppendDiagonals(order, {0, 0}, r, c);
  for (int k = 0; k < levels; ++k, r *= 2, c *= 2) {
    if (lowerFirst) AppendSnake(order, {r, 0}, r, c, false);
    AppendSnake(order, {0, c}, r, c, true);
    if (!lowerFirst) AppendSnake(order, {r, 0}, r, c, false);
    AppendDiagonals(order, {r, c}, r, c);
  }
  for (int row = 0; row < rows; ++row) {
    for (int col = row < r ? c : 0; col < cols; ++col) order.push_back({row, col});
  }
  return order;
}

// Each level behind the coarsest anew: the children of found parents first, then those among which
// one is found, then the rest, always in the order of their parents.
void Reorder(Positions& order, const Grid<float>& quantized, int levels) {
  int r = quantized.Rows() >> levels;
  int c = quantized.Cols() >> levels;
  const auto found = [&](Position p) { return quantized(p.row, p.col) != 0; };
  for (int level = 1; level < levels; ++level, r *= 2, c *= 2) {
    const auto parents = order.begin() + std::ptrdiff_t{r} * c;
    const auto children = order.begin() + std::ptrdiff_t{4} * r * c;
    std::array<Positions, 3> groups;
    for (const Position p : Positions(parents, children)) {
      const auto four = ChildrenOf(p, p.row >= r && p.col < c, p.row < r);
      const bool one = std::ranges::any_of(four, found);
      Positions& group = groups[found(p) ? 0 : one ? 1 : 2];
      group.insert(group.end(), four.begin(), four.end());
    }
    auto next = children;
    for (const Positions& group : groups) next = std::ranges::copy(group, next).out;
  }
}

class ListedVisits final : public Visits {
 public:
  ListedVisits(const FileInfo& info, bool adaptive)
      : levels_(info.levels),
        adaptive_(adaptive),
        order_(FirstOrder(info.codedRows, info.codedCols, info.levels, !adaptive)) {}

  std::optional<Position> Next() override {
    if (next_ == order_.size()) return {};
    return order_[next_++];
  }
  [[nodiscard]] const Positions& Refined() const override { return order_; }
  void EndPass(const Grid<float>& quantized) override {
    next_ = 0;
    if (adaptive_) Reorder(order_, quantized, levels_);
  }

 private:
  int levels_;
  bool adaptive_;
  Positions order_;
  std::size_t next_ = 0;
};

std::unique_ptr<Visits> MakeVisits(const FileInfo& info, Scan scan) {
  if (scan == Scan::kRanked) {
    return std::make_unique<RankedVisits>(info.levels, info.codedRows, info.codedCols);
  }
  return std::make_unique<ListedVisits>(info, scan == Scan::kAdaptive);
}

// The passes in either direction.
class Walker {
 public:
  Walker(const FileInfo& info, const Bits& bits, std::int32_t budget)
      : quantized(info.codedRows, info.codedCols),
        coefficients(info.codedRows, info.codedCols),
        mask(info.codedRows, info.codedCols, 1),
        symbols(RulesOf(info.kind).coding, bits),
        info_(info),
        rules_(RulesOf(info.kind)),
        reading_(bits.stream.has_value()),
        budget_(budget),
        visits_(MakeVisits(info, rules_.scan)),
        threshold_(std::ldexp(1.0F, info.exponent)) {}

  // Whether the budget and the stream let every pass end.
  bool Run() {
    try {
      do {
        Pass();
      } while (pass_ < kMostPasses && !(info_.budget ? LoopTest() : threshold_ < 2.0F));
    } catch (const CodingEnds&) {
      return false;
    }
    return true;
  }

  // Puts what was read into the intervals that it leaves open.
  void Place() {
    std::int32_t old = 0;
    for (const Position p : visits_->Refined()) {
      float& q = quantized(p.row, p.col);
      if (q == 0) continue;
      const bool unrefined = std::fabs(q) >= 2 * threshold_ && ++old > refined_;
      q += std::copysign(unrefined ? threshold_ : threshold_ / 2, q);
    }
  }

  // The test at the end of a pass of the coders that have a budget.
  [[nodiscard]] bool LoopTest() const {
    return info_.wavelet == WaveletKind::kDaub97 ? pass_ >= kMostPasses : threshold_ == 1.0F;
  }
  void Report() { reports.push_back({pass_, threshold_, found_, symbols.Count()}); }

  Grid<float> quantized;
  // To write: what, and from how many bits on only what lies in the mask.
  Grid<float> coefficients;
  Grid<std::uint8_t> mask;
  std::int32_t switchPoint = kNoBudget;
  Symbols symbols;
  std::vector<PassReport> reports;

 private:
  void Pass() {
    ++pass_;
    threshold_ /= 2;
    refined_ = 0;
    Find();
    TestBudget();
    if (pass_ > 1) Refine();
    Report();
    visits_->EndPass(quantized);
  }

  void Find() {
    std::int32_t run = 1;
    std::int32_t number = reading_ ? symbols.Number(1) : 0;
    while (const auto p = visits_->Next()) {
      const float c = Sought(*p);
      float& q = quantized(p->row, p->col);
      if (q != 0) continue;
      if (reading_ ? run == number : std::fabs(c) >= threshold_) {
        if (!reading_) symbols.Number(run);
        q = symbols.Sign(c < 0) ? -threshold_ : threshold_;
        ++found_;
        visits_->Found(*p);
        run = 1;
        TestBudget();
        if (reading_) number = symbols.Number(1);
      } else {
        ++run;
        // The arithmetic coders of ASWDR look at their budget only where they have spent something.
        if (!reading_ && rules_.coding != Coding::kAswdr) TestBudget();
      }
    }
    if (!reading_) symbols.Number(run + 1);
  }

  // A coefficient as the first part of a pass to write sees it.
  float Sought(Position p) {
    if (symbols.Count() >= switchPoint) regionOnly_ = true;
    return regionOnly_ && mask(p.row, p.col) == 0 ? 0.0F : coefficients(p.row, p.col);
  }

  void Refine() {
    for (const Position p : visits_->Refined()) {
      float& q = quantized(p.row, p.col);
      if (std::fabs(q) < 2 * threshold_) continue;
      const bool moved = std::fabs(coefficients(p.row, p.col) - q) >= threshold_;
      if (symbols.Refinement(moved)) q += std::copysign(threshold_, q);
      ++refined_;
      TestBudget();
    }
  }

  void TestBudget() const {
    const std::int32_t bits = reading_ ? symbols.Count() : symbols.Spent();
    if (info_.budget && bits >= budget_) throw CodingEnds{};
  }

  const FileInfo& info_;
  const Rules& rules_;
  bool reading_;
  std::int32_t budget_;
  std::unique_ptr<Visits> visits_;
  bool regionOnly_ = false;
  int pass_ = 0;
  float threshold_;
  std::int32_t found_ = 0;
  std::int32_t refined_ = 0;  // in this pass
};

// The top left rows x cols of an image, of which the last row and column are repeated.
Image Resized(const Image& image, int rows, int cols) {
  Image resized(rows, cols);
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < cols; ++c) {
      resized(r, c) = image(std::min(r, image.Rows() - 1), std::min(c, image.Cols() - 1));
    }
  }
  return resized;
}

Grid<float> CoefficientsOf(const Image& image, const FileInfo& info) {
  const Image coded = Resized(image, info.codedRows, info.codedCols);
  Grid<float> coefficients = TransformTheImage(coded, info.wavelet, info.levels);
  AddAverage(coefficients, info.levels, -info.mean);
  return coefficients;
}

// The bits from which on the region is all that counts; without a budget, of 8 a pixel.
std::int32_t SwitchPoint(const FileInfo& info, float share) {
  const double held = share < 0 ? 0.01F : std::min(share, 0.99F);
  const float all = static_cast<float>(info.rows) * static_cast<float>(info.cols) * 8;
  return ToInt32((1.0 - held) * (info.budget ? static_cast<double>(*info.budget) : all));
}

std::size_t HeaderBytes(const FileInfo& info) {
  return info.budget ? 14 : 10;
}

}  // namespace

std::vector<FileKind> Kinds() {
  const auto all = AllKinds();
  std::vector<FileKind> kinds(all.begin(), all.end());
  std::erase(kinds, FileKind::kAwh);
  return kinds;
}

Coded Compress(const Image& image, const CompressOptions& options) {
  Bytes file = marovia::Compress(image, options).file;
  const FileInfo info = Inspect(file, options.kind);
  const Rules& rules = RulesOf(info.kind);
  Walker walker(info, {options.region ? rules.regionCharge : rules.charge},
                info.budget.value_or(kNoBudget));
  walker.coefficients = CoefficientsOf(image, info);
  if (options.region) {
    walker.mask = GetROIValues(info.codedRows, info.codedCols, *options.region,
                               2 * SupportOfWavelet(info.wavelet), info.levels);
    walker.switchPoint = SwitchPoint(info, options.share);
  }
  walker.Run();
  const Bytes stream = walker.symbols.Finish();
  walker.Report();
  file.resize(HeaderBytes(info));
  file.insert(file.end(), stream.begin(), stream.end());
  return {std::move(file), std::move(walker.reports)};
}

Decoded Decompress(ByteView file, FileKind kind, std::optional<std::int32_t> budget) {
  const FileInfo info = Inspect(file, kind);
  Walker walker(info, {RulesOf(kind).readerCharge, file.subspan(HeaderBytes(info))},
                std::min(info.budget.value_or(kNoBudget), budget.value_or(kNoBudget)));
  const bool missingBits = !walker.Run() && walker.symbols.PastEnd();
  walker.Report();
  const bool isRefined =
      info.budget ? info.wavelet != WaveletKind::kDaub97 && walker.LoopTest() : !missingBits;
  if (!isRefined) walker.Place();
  AddAverage(walker.quantized, info.levels, info.mean);
  const Image coded = InvertTheTransformQuant(walker.quantized, info.wavelet, info.levels);
  return {Resized(coded, info.rows, info.cols), std::move(walker.reports), missingBits};
}

}  // namespace marovia::plain
