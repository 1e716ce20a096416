#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <utility>

#include "marovia/codec.h"

#include "base/number_text.h"
#include "codec/context_kind.h"
#include "codec/decompression.h"
#include "coding/raw_symbols.h"
#include "format/file_header.h"
#include "wavelet/catalogue.h"

namespace marovia {
namespace {

constexpr std::int64_t kMostBudgetBytes = (std::int64_t{1} << 28) - 1;

void CheckTarget(const TruncateOptions& options) {
  if (options.rate.has_value() == options.bytes.has_value()) {
    Fail(Errc::kInvalidArgument, "Just one of a rate and a number of bytes must be given.");
  }
  if (options.rate && !(std::isfinite(*options.rate) && *options.rate > 0)) {
    Fail(Errc::kInvalidArgument, "The rate is " + TrimmedNumberText(*options.rate) +
                                     " bits per pixel; it must be above 0.");
  }
  if (options.bytes && *options.bytes < 1) {
    Fail(Errc::kInvalidArgument, "The file is to have " + std::to_string(*options.bytes) +
                                     " bytes; that must be 1 or more.");
  }
}

// What is left of a file: a header, the start of its stream, and perhaps a closing byte.
struct Cut {
  FileKind kind = FileKind::kAwf;
  Bytes header;
  std::size_t streamBytes = 0;
  bool closed = false;
  bool whole = false;         // nothing that the file holds is missing
  std::int64_t bitsRead = 0;  // by a run at the budget, the header's charge included

  [[nodiscard]] std::int64_t Size() const {
    return static_cast<std::int64_t>(header.size() + streamBytes) + (closed ? 1 : 0);
  }
};

// A file to be cut: what a run asks of its stream at a budget.
class LongFile {
 public:
  LongFile(ByteView file, FileKind kind, std::int64_t maxPixels)
      : kind_(kind),
        header_(CheckedHeader(file, CoderOf(kind).HasBudget(), maxPixels)),
        stream_(file.subspan(HeaderSize(header_.budget.has_value()))) {}

  [[nodiscard]] const FileHeader& Header() const { return header_; }
  [[nodiscard]] std::size_t HeaderBytes() const { return HeaderSize(header_.budget.has_value()); }
  [[nodiscard]] ByteView Stream() const { return stream_; }

  // The start that decodes as the file does at a budget, which is not above its own. Where
  // something other than the budget ends the run, the file needs all that was read.
  [[nodiscard]] Cut At(std::int32_t budget) const {
    FileHeader header = header_;
    header.budget = budget;
    const FileKind kind = kind_ == FileKind::kAwg ? FileKind::kAwf : kind_;
    Decompression run(header, kind, stream_);
    run.ReadPasses({});
    const bool whole = !run.BudgetSpent();
    return {.kind = whole ? kind_ : kind,
            .header = WriteHeader(whole ? header_ : header),
            .streamBytes =
                std::min(static_cast<std::size_t>((run.StreamBitsRead() + 7) / 8), stream_.size()),
            .closed = !run.TheCoder().IsArithmetic(),
            .whole = whole,
            .bitsRead = run.StreamBitsRead() + run.TheCoder().decoderCharge};
  }

 private:
  FileKind kind_;
  FileHeader header_;
  ByteView stream_;
};

// The longest start that fits.
Cut StartOfBytes(const LongFile& file, std::int64_t most) {
  std::int64_t bits = 8 * std::min(most, kMostBudgetBytes);
  if (file.Header().budget) bits = std::min<std::int64_t>(bits, *file.Header().budget);
  do {
    Cut cut = file.At(static_cast<std::int32_t>(bits));
    const std::int64_t excess = cut.Size() - most;
    if (excess <= 0) return cut;
    // No budget above the bits read makes a difference, however many bytes lie behind them.
    bits = std::min(bits, cut.bitsRead) - 8 * excess;
  } while (bits > 0);
  Fail(Errc::kInvalidArgument, "A shorter file does not fit " + std::to_string(most) + " bytes.");
}

// Nothing where the file is short enough as it is.
std::optional<Cut> CutOf(const LongFile& file, std::int64_t size, const TruncateOptions& options) {
  if (options.bytes) {
    if (*options.bytes >= size) return std::nullopt;
    return StartOfBytes(file, *options.bytes);
  }
  const std::int32_t budget = BitBudget(*options.rate, file.Header().sides);
  if (file.Header().budget && *file.Header().budget <= budget) return std::nullopt;
  Cut cut = file.At(budget);
  if (cut.whole) return std::nullopt;
  return cut;
}

LongFile Opened(ByteView file, FileKind kind, const TruncateOptions& options) {
  CheckTarget(options);
  LongFile opened(file, kind, options.maxPixels);
  if (kind == FileKind::kAwg && !IsInteger(opened.Header().wavelet)) {
    Fail(Errc::kUnsupported, "A lossless file of the 9/7 wavelet cannot be cut to a lossy one.");
  }
  return opened;
}

// In place; such a file is made shorter by cutting it.
TruncateResult TruncatedContext(Bytes&& file, const TruncateOptions& options) {
  CheckTarget(options);
  const auto kept = static_cast<std::size_t>(ContextCut(file, options));
  const bool whole = kept == file.size();
  file.resize(kept);
  return {std::move(file), FileKind::kAwh, whole};
}

void Close(Bytes& file, const Cut& cut) {
  if (cut.closed) file.push_back(kEndByte);
}

}  // namespace

TruncateResult Truncate(ByteView file, FileKind kind, const TruncateOptions& options) {
  if (kind == FileKind::kAwh) return TruncatedContext({file.begin(), file.end()}, options);
  const LongFile opened = Opened(file, kind, options);
  const auto cut = CutOf(opened, static_cast<std::int64_t>(file.size()), options);
  if (!cut) return {Bytes(file.begin(), file.end()), kind, true};
  const ByteView kept = opened.Stream().first(cut->streamBytes);
  TruncateResult result{cut->header, cut->kind, cut->whole};
  result.file.insert(result.file.end(), kept.begin(), kept.end());
  Close(result.file, *cut);
  return result;
}

TruncateResult Truncate(Bytes&& file, FileKind kind, const TruncateOptions& options) {
  if (kind == FileKind::kAwh) return TruncatedContext(std::move(file), options);
  const LongFile opened = Opened(file, kind, options);
  const auto cut = CutOf(opened, static_cast<std::int64_t>(file.size()), options);
  if (!cut) return {std::move(file), kind, true};
  file.resize(opened.HeaderBytes() + cut->streamBytes);
  file.insert(file.begin(), cut->header.size() - opened.HeaderBytes(), 0);
  std::ranges::copy(cut->header, file.begin());
  Close(file, *cut);
  return {std::move(file), cut->kind, cut->whole};
}

}  // namespace marovia
