#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <memory>
#include <utility>

#include "marovia/error.h"

#include "base/checked.h"
#include "tests/support/literal_coder.h"
#include "tests/support/literal_scan.h"
#include "tests/support/literal_symbols.h"
#include "tests/support/literal_transform.h"

namespace marovia::literal {
namespace {

// Bits counted for the header before the first bit of the stream.
std::int32_t Charge(const Settings& settings) {
  if (settings.kind == FileKind::kAwa) return 136;
  if (settings.kind == FileKind::kAwf) return settings.region ? 136 : 128;
  return settings.kind == FileKind::kAwg ? 96 : 120;
}

// The exponent of the first threshold: above every magnitude, and 1 or more.
int GetThreshold(const Grid<float>& transform, WaveletKind wavelet) {
  float largest = 0;
  for (const float c : transform.Samples()) largest = std::max(largest, std::fabs(c));
  if (largest == 0 && wavelet != WaveletKind::kDaub97) return 1;
  if (largest < 0.5F) return 0;
  const double e = std::log(static_cast<double>(largest)) / std::log(2.0);
  int n = ToInt32(e);
  if (n < e) ++n;
  // A decoder cannot know which coefficients equal the first threshold.
  if (std::ldexp(1.0, n) == largest) ++n;
  return n;
}

int HeldLevels(const Image& image, const Settings& settings) {
  const int limit = LevelLimit(settings.wavelet, image.Rows(), image.Cols());
  if (settings.levels < 1 || limit < 0) {
    Fail(Errc::kInvalidArgument, "This image has no transform of so many levels.");
  }
  return std::min(settings.levels, limit);
}

class Encoder {
 public:
  Encoder(const Image& image, const Settings& settings)
      : settings_(settings),
        steps_(image.Rows() * image.Cols()),
        quantized_(image.Rows(), image.Cols()),
        mask_(image.Rows(), image.Cols(), 1),
        order_(image.Rows(), image.Cols()),
        ranked_(0, 1, 1) {
    Prepare(image);
  }

  Encoded Run() {
    symbols_ = MakeSymbolWriter(settings_.kind, result_.file, Charge(settings_));
    try {
      do {
        Pass();
      } while (!PassesEnd(settings_.kind, settings_.wavelet, pass_, threshold_));
    } catch (const CodingEnds&) {
    }
    symbols_->Finish();
    ReportData();
    return std::move(result_);
  }

 private:
  void Prepare(const Image& image) {
    const int rows = image.Rows();
    const int cols = image.Cols();
    const bool lossless = settings_.kind == FileKind::kAwg;
    if (!lossless) budget_ = CheckedMul32(ToInt32(cols * settings_.rate), rows);
    result_.levels = HeldLevels(image, settings_);
    transform_ = TransformTheImage(image, settings_.wavelet, result_.levels);
    result_.mean = SubtractAverage(transform_, settings_.wavelet, result_.levels);
    result_.exponent = GetThreshold(transform_, settings_.wavelet);
    threshold_ = std::ldexp(1.0F, result_.exponent);
    order_ = IsAdaptive(settings_.kind) ? CreateScanOrder(result_.levels, rows, cols)
                                        : CreateScanOrderHF(result_.levels, rows, cols);
    ranked_ = RankedWalk(result_.levels, rows, cols);
    WriteHeader(rows, cols);
    if (settings_.region) PrepareRegion(image);
  }

  void PrepareRegion(const Image& image) {
    mask_ = GetROIValues(image, settings_.wavelet, result_.levels, *settings_.region);
    float share = settings_.share;
    if (share < 0) share = 0.01F;
    if (share > 0.99F) share = 0.99F;
    double bits = budget_;
    if (settings_.kind == FileKind::kAwg) bits = static_cast<float>(CheckedMul32(steps_, 8));
    switchPoint_ = ToInt32((1.0 - share) * bits);
  }

  void WriteHeader(int rows, int cols) {
    if (settings_.kind != FileKind::kAwg) Put(static_cast<std::uint32_t>(budget_), 4);
    Put(ToByte(10 * result_.levels + static_cast<int>(settings_.wavelet)), 1);
    Put(static_cast<std::uint16_t>(ToInt16(rows)), 2);
    Put(static_cast<std::uint16_t>(ToInt16(cols)), 2);
    Put(std::bit_cast<std::uint32_t>(result_.mean), 4);
    Put(ToByte(result_.exponent), 1);
  }

  void Put(std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
      result_.file.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
  }

  void Pass() {
    ++pass_;
    previous_ = threshold_;
    threshold_ /= 2;
    SignificancePart();
    if (pass_ > 1) RefinementPart();
    before_ = significant_;
    ReportData();
    if (IsAdaptive(settings_.kind)) {
      CreateNewScanOrder(order_, quantized_, result_.levels, threshold_);
    }
  }

  void SignificancePart() {
    std::int32_t run = 1;
    ForPass(settings_.kind, order_, steps_, ranked_, [&](Position p) {
      TestRegionSwitch();
      if (FoundEarlier(p)) return;
      const float c = Weight(p) * transform_(p.row, p.col);
      const bool found = std::fabs(c) >= threshold_;
      if (found) {
        ++significant_;
        symbols_->Number(run);
        symbols_->Sign(c < 0);
        quantized_(p.row, p.col) = c < 0 ? -threshold_ : threshold_;
        run = 1;
        if (settings_.kind == FileKind::kAwc) ranked_.Find(p);
      } else {
        ++run;
      }
      // This one kind looks at its budget only where it has spent something.
      if (found || settings_.kind != FileKind::kAwf) TestBudget();
    });
    symbols_->Number(run + 1);
    TestBudget();
  }

  void RefinementPart() {
    std::int32_t refined = 0;
    ForFound(settings_.kind, order_, steps_, ranked_, [&](Position p) {
      float& q = quantized_(p.row, p.col);
      if (std::fabs(q) >= previous_) {
        ++refined;
        const bool moved = std::fabs(transform_(p.row, p.col) - q) >= threshold_;
        if (moved) q = q > 0 ? q + threshold_ : q - threshold_;
        symbols_->Refinement(moved);
        TestBudget();
      }
      if (refined == before_) return false;
      TestBudget();
      return true;
    });
  }

  bool FoundEarlier(Position p) const {
    const float known = settings_.region ? quantized_(p.row, p.col) : transform_(p.row, p.col);
    return std::fabs(known) >= previous_;
  }

  void TestRegionSwitch() {
    if (settings_.region && symbols_->BitsSent() >= switchPoint_) regionOnly_ = true;
  }

  float Weight(Position p) const { return regionOnly_ && mask_(p.row, p.col) == 0 ? 0.0F : 1.0F; }

  void TestBudget() const {
    const bool limited = settings_.kind != FileKind::kAwg;
    if (limited && symbols_->BitsSpent() >= budget_) throw CodingEnds{};
  }

  void ReportData() {
    result_.passes.push_back({pass_, threshold_, significant_, symbols_->BitsSent()});
  }

  Settings settings_;
  int steps_;
  Encoded result_;
  Grid<float> transform_;
  Grid<float> quantized_;
  Grid<std::int16_t> mask_;
  ScanOrder order_;
  RankedWalk ranked_;
  std::unique_ptr<SymbolWriter> symbols_;
  std::int32_t budget_ = 0;
  std::int32_t switchPoint_ = 0;
  bool regionOnly_ = false;
  int pass_ = 0;
  float threshold_ = 0;
  float previous_ = 0;
  std::int32_t significant_ = 0;
  std::int32_t before_ = 0;  // found in the passes before this one
};

}  // namespace

Encoded Compress(const Image& image, const Settings& settings) {
  return Encoder(image, settings).Run();
}

}  // namespace marovia::literal
