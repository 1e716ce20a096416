#include <bit>
#include <cmath>
#include <cstddef>
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

constexpr int kLargestExponent = 31;
constexpr int kLargestSide = 32767;
constexpr int kPadded = 128;

std::int32_t Charge(FileKind kind) {
  if (kind == FileKind::kAwf) return 128;
  return kind == FileKind::kAwg ? 96 : 120;
}

struct Header {
  std::int32_t budget = 0;
  WaveletKind wavelet = WaveletKind::kInteger53;
  int levels = 0;
  int rows = 0;  // of the image
  int cols = 0;
  int codedRows = 0;
  int codedCols = 0;
  float mean = 0;
  int exponent = 0;
  std::size_t size = 0;
};

// The next multiple of 2^levels; of 1 and 2 as of 4.
int Padded(int side, int levels) {
  int padded = side < 3 ? 4 : side;
  while (padded % (1 << levels) != 0) ++padded;
  return padded;
}

Image Cropped(const Image& image, int rows, int cols) {
  Image cropped(rows, cols);
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < cols; ++c) cropped(r, c) = image(r, c);
  }
  return cropped;
}

class HeaderReader {
 public:
  explicit HeaderReader(ByteView file) : file_(file) {}

  Header Read(FileKind kind) {
    Header header;
    if (kind != FileKind::kAwg) header.budget = static_cast<std::int32_t>(Get(4));
    const auto packed = static_cast<int>(Get(1));
    const bool padded = packed >= kPadded;
    const int number = packed % kPadded % 10;
    header.levels = packed % kPadded / 10;
    header.wavelet = static_cast<WaveletKind>(number);
    header.rows = static_cast<std::int16_t>(Get(2));
    header.cols = static_cast<std::int16_t>(Get(2));
    header.mean = std::bit_cast<float>(Get(4));
    header.exponent = static_cast<int>(Get(1));
    header.size = next_;
    Require(number >= 1 && number <= 3);
    Require(header.rows > 0 && header.cols > 0 && header.exponent <= kLargestExponent);
    header.codedRows = padded ? Padded(header.rows, header.levels) : header.rows;
    header.codedCols = padded ? Padded(header.cols, header.levels) : header.cols;
    Require(header.codedRows <= kLargestSide && header.codedCols <= kLargestSide);
    Require(!padded || header.codedRows > header.rows || header.codedCols > header.cols);
    Require(header.levels <= LevelLimit(header.wavelet,
                                        padded ? Padded(header.rows, 0) : header.rows,
                                        padded ? Padded(header.cols, 0) : header.cols));
    return header;
  }

 private:
  static void Require(bool holds) {
    if (!holds) Fail(Errc::kMalformed, "No compressor writes such a header.");
  }

  std::uint32_t Get(int bytes) {
    std::uint32_t value = 0;
    for (int i = 0; i < bytes; ++i) {
      Require(next_ < file_.size());
      value |= std::uint32_t{file_[next_++]} << (8 * i);
    }
    return value;
  }

  ByteView file_;
  std::size_t next_ = 0;
};

std::int32_t SetBitBudget(const Header& header, double rate) {
  const std::int32_t requested = CheckedMul32(ToInt32(header.cols * rate), header.rows);
  return header.budget < requested ? header.budget : requested;
}

class Decoder {
 public:
  Decoder(ByteView file, FileKind kind, double rate)
      : kind_(kind),
        header_(HeaderReader(file).Read(kind)),
        budget_(kind == FileKind::kAwg ? 0 : SetBitBudget(header_, rate)),
        steps_(header_.codedRows * header_.codedCols),
        quantized_(header_.codedRows, header_.codedCols),
        order_(IsAdaptive(kind)
                   ? CreateScanOrder(header_.levels, header_.codedRows, header_.codedCols)
                   : CreateScanOrderHF(header_.levels, header_.codedRows, header_.codedCols)),
        symbols_(MakeSymbolReader(kind, file, header_.size, Charge(kind))),
        threshold_(std::ldexp(1.0F, header_.exponent)) {}

  Decoded Run() {
    try {
      do {
        Pass();
      } while (!PassesEnd(kind_, header_.wavelet, pass_, threshold_));
    } catch (const CodingEnds&) {
      result_.missingBits = symbols_->PastEnd();
    }
    ReportDataRec();
    if (IsUnfinished()) PlaceFinally();
    AddAverage(quantized_, header_.levels, header_.mean);
    result_.image = Cropped(InvertTheTransformQuant(quantized_, header_.wavelet, header_.levels),
                            header_.rows, header_.cols);
    return std::move(result_);
  }

 private:
  void Pass() {
    ++pass_;
    previous_ = threshold_;
    threshold_ /= 2;
    refined_ = 0;
    SignificancePart();
    TestBudget();
    if (pass_ > 1) RefinementPart();
    before_ = significant_;
    ReportDataRec();
    if (IsAdaptive(kind_)) CreateNewScanOrder(order_, quantized_, header_.levels, threshold_);
  }

  void SignificancePart() {
    std::int32_t number = symbols_->Number();
    std::int32_t run = 1;
    Position p;
    for (int step = 0; step < steps_; ++step, p = order_.Next(p)) {
      if (quantized_(p.row, p.col) != 0) continue;
      if (run != number) {
        ++run;
        continue;
      }
      quantized_(p.row, p.col) = symbols_->Sign() ? -threshold_ : threshold_;
      ++significant_;
      run = 1;
      TestBudget();
      number = symbols_->Number();
    }
  }

  void RefinementPart() {
    Position p;
    for (int step = 0; step < steps_; ++step, p = order_.Next(p)) {
      float& q = quantized_(p.row, p.col);
      if (std::fabs(q) >= previous_) {
        const bool moved = symbols_->Refinement();
        if (moved) q = q > 0 ? q + threshold_ : q - threshold_;
        ++refined_;
        TestBudget();
      }
      if (refined_ == before_) return;
      TestBudget();
    }
  }

  // Whether the values are left at the lower ends of intervals that are still open.
  bool IsUnfinished() const {
    if (kind_ == FileKind::kAwg) return result_.missingBits;
    return header_.wavelet == WaveletKind::kDaub97 || !LoopTest(header_.wavelet, pass_, threshold_);
  }

  void PlaceFinally() {
    std::int32_t counter = 0;
    Position p;
    for (int step = 0; step < steps_; ++step, p = order_.Next(p)) {
      LastRefinement(quantized_(p.row, p.col), counter);
    }
  }

  void LastRefinement(float& q, std::int32_t& counter) const {
    const float halfStep = threshold_ / 2;
    const float magnitude = std::fabs(q);
    if (magnitude < threshold_) return;
    float step = halfStep;
    if (magnitude >= 2 * threshold_) {
      ++counter;
      if (counter > refined_) step = threshold_;
    }
    q = q < 0 ? q - step : q + step;
  }

  void TestBudget() const {
    if (kind_ != FileKind::kAwg && symbols_->BitsRead() >= budget_) throw CodingEnds{};
  }

  void ReportDataRec() {
    result_.passes.push_back({pass_, threshold_, significant_, symbols_->BitsRead()});
  }

  FileKind kind_;
  Header header_;
  std::int32_t budget_;
  int steps_;
  Grid<float> quantized_;
  ScanOrder order_;
  std::unique_ptr<SymbolReader> symbols_;
  Decoded result_;
  int pass_ = 0;
  float threshold_;
  float previous_ = 0;
  std::int32_t significant_ = 0;
  std::int32_t before_ = 0;
  std::int32_t refined_ = 0;
};

}  // namespace

Decoded Decompress(ByteView file, FileKind kind, double rate) {
  return Decoder(file, kind, rate).Run();
}

}  // namespace marovia::literal
