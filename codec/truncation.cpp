#include <cmath>
#include <string>

#include "marovia/codec.h"

#include "base/number_text.h"
#include "codec/decompression.h"
#include "coding/file_header.h"
#include "wavelet/catalogue.h"

namespace marovia {
namespace {

void CheckTarget(const TruncateOptions& options) {
  if (options.rate.has_value() == options.bytes.has_value()) {
    Fail(Errc::kInvalidArgument, "Just one of a rate and a number of bytes must be given.");
  }
  if (options.rate && !(std::isfinite(*options.rate) && *options.rate > 0)) {
    Fail(Errc::kInvalidArgument,
         "The rate is" + NumberText(*options.rate) + " bits per pixel; it must be above 0.");
  }
}

// What a run at a budget makes of a file.
struct Cut {
  std::optional<Bytes> file;  // none where the budget does not end the run: it needs all there is
  std::int64_t bitsRead = 0;  // the header's charge included
};

// The start of a stream that a decoder asks for at a budget, under the header of its lossy kind.
class Start {
 public:
  Start(ByteView file, FileKind kind, std::int64_t maxPixels)
      : file_(file), kind_(kind), maxPixels_(maxPixels) {}

  [[nodiscard]] FileKind LossyKind() const {
    return kind_ == FileKind::kAwg ? FileKind::kAwf : kind_;
  }

  [[nodiscard]] Cut At(std::int32_t budget) const {
    const Decompression whole(file_, kind_, maxPixels_);
    Bytes header = HeaderOf(whole.Info(), budget);
    Bytes lossy = header;
    lossy.insert(lossy.end(), whole.Stream().begin(), whole.Stream().end());
    Decompression run(lossy, LossyKind(), maxPixels_);
    run.ReadPasses({});
    const std::int64_t bitsRead = run.StreamBitsRead() + run.TheCoder().decoderCharge;
    if (!run.BudgetSpent()) return {std::nullopt, bitsRead};

    const auto bytes = static_cast<std::size_t>((run.StreamBitsRead() + 7) / 8);
    const ByteView kept = whole.Stream().first(std::min(bytes, whole.Stream().size()));
    header.insert(header.end(), kept.begin(), kept.end());
    if (!run.TheCoder().IsArithmetic()) header.push_back(128);
    const FileInfo& info = whole.Info();
    if (info.rows != info.codedRows || info.cols != info.codedCols) {
      AppendSizeNote(header, {info.rows, info.cols});
    }
    return {std::move(header), bitsRead};
  }

 private:
  static Bytes HeaderOf(const FileInfo& info, std::int32_t budget) {
    Bytes header;
    AppendBudget(header, budget);
    AppendGeometry(header, info.levels, info.wavelet, info.codedRows, info.codedCols);
    AppendMean(header, info.mean);
    AppendExponent(header, info.exponent);
    return header;
  }

  ByteView file_;
  FileKind kind_;
  std::int64_t maxPixels_;
};

// The longest start that fits. A run that its budget does not end has at most `size` bytes.
Bytes StartOfBytes(const Start& start, std::int64_t most, std::int64_t size) {
  std::int64_t bits = 8 * std::min<std::int64_t>(most, (std::int64_t{1} << 28) - 1);
  while (bits > 0) {
    Cut cut = start.At(static_cast<std::int32_t>(bits));
    const std::int64_t excess =
        (cut.file ? static_cast<std::int64_t>(cut.file->size()) : size) - most;
    if (cut.file && excess <= 0) return *std::move(cut.file);
    const std::int64_t step = 8 * excess;
    // No budget above the bits read ends the run either, however many bytes lie behind them.
    const std::int64_t idle =
        cut.file ? 0 : std::max<std::int64_t>(0, (bits - cut.bitsRead - 1) / step);
    bits -= step * (idle + 1);
  }
  Fail(Errc::kInvalidArgument, "A shorter file does not fit " + std::to_string(most) + " bytes.");
}

}  // namespace

TruncateResult Truncate(ByteView file, FileKind kind, const TruncateOptions& options) {
  CheckTarget(options);
  const FileInfo info = Inspect(file, kind, options.maxPixels);
  TruncateResult whole{Bytes(file.begin(), file.end()), kind, true};
  if (kind == FileKind::kAwg && !IsInteger(info.wavelet)) {
    Fail(Errc::kUnsupported, "A lossless file of the 9/7 wavelet cannot be cut to a lossy one.");
  }
  const Start start(file, kind, options.maxPixels);
  std::optional<Bytes> result;
  if (options.bytes) {
    const auto size = static_cast<std::int64_t>(file.size());
    if (*options.bytes >= size) return whole;
    result = StartOfBytes(start, *options.bytes, size);
  } else {
    const std::int32_t budget = BitBudget(*options.rate, info.rows, info.cols);
    if (info.budget && *info.budget <= budget) return whole;
    result = start.At(budget).file;
  }
  return result ? TruncateResult{*std::move(result), start.LossyKind(), false} : whole;
}

}  // namespace marovia
