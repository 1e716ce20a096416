#include <algorithm>

#include "codec/coders.h"
#include "codec/context_kind.h"
#include "codec/decompression.h"

namespace marovia {
namespace {

// What a decoder may read of a stream beyond its budget: a last group of symbols, each of 11 bits
// at the most, and the bits of a code value.
constexpr std::int64_t kBytesBeyondBudget = 128;
// Of a lossless stream: 32 passes cost less than 8 bytes a coefficient, and small images their end
// marks besides.
constexpr std::int64_t kBytesPerPixel = 8;
constexpr std::int64_t kBytesOfPasses = 4096;

// The compressor that charged its header most left the fewest bits for the stream.
bool FillsBudget(const Coder& coder, const FileInfo& info) {
  if (!info.budget) return false;
  const int charge = std::max(coder.encoderCharge, coder.regionCharge);
  return info.bitsPresent >= std::int64_t{*info.budget} - charge;
}

}  // namespace

FileInfo InfoOf(const FileHeader& header, FileKind kind, std::int64_t streamBytes) {
  FileInfo info;
  info.kind = kind;
  info.wavelet = header.wavelet;
  info.levels = header.levels;
  info.rows = header.sides.rows;
  info.cols = header.sides.cols;
  info.codedRows = header.CodedSides().rows;
  info.codedCols = header.CodedSides().cols;
  info.mean = header.mean;
  info.exponent = header.exponent;
  info.budget = header.budget;
  info.bitsPresent = 8 * streamBytes;
  info.fillsBudget = FillsBudget(CoderOf(kind), info);
  return info;
}

FileInfo InspectStart(ByteView start, std::int64_t fileBytes, FileKind kind,
                      std::int64_t maxPixels) {
  if (kind == FileKind::kAwh) return InspectContext(start, fileBytes, maxPixels);
  const auto header = static_cast<std::int64_t>(HeaderSize(CoderOf(kind).HasBudget()));
  return InfoOf(CheckedHeader(start, CoderOf(kind).HasBudget(), maxPixels), kind,
                std::max<std::int64_t>(0, fileBytes - header));
}

FileInfo Inspect(ByteView file, FileKind kind, std::int64_t maxPixels) {
  return InspectStart(file, static_cast<std::int64_t>(file.size()), kind, maxPixels);
}

std::int64_t UsefulBytes(const FileInfo& info) {
  if (info.kind == FileKind::kAwh) return UsefulContextBytes(info);
  const auto header = static_cast<std::int64_t>(HeaderSize(info.budget.has_value()));
  if (info.budget) return header + std::max(0, *info.budget) / 8 + kBytesBeyondBudget;
  return header + kBytesPerPixel * std::int64_t{info.codedRows} * info.codedCols + kBytesOfPasses;
}

}  // namespace marovia
