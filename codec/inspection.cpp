#include "codec/inspection.h"

#include <algorithm>
#include <string>

#include "codec/coders.h"
#include "codec/context_kind.h"
#include "codec/geometry.h"

namespace marovia {
namespace {

// What a decoder may read of a stream beyond its budget: a last group of symbols, each of 11 bits
// at the most, and the bits of a code value.
constexpr std::int64_t kBytesBeyondBudget = 128;
// Of a lossless stream: 32 passes cost less than 8 bytes a coefficient, and small images their end
// marks besides.
constexpr std::int64_t kBytesPerPixel = 8;
constexpr std::int64_t kBytesOfPasses = 4096;

std::string Text(Sides sides) {
  return std::to_string(sides.rows) + " x " + std::to_string(sides.cols);
}

std::int64_t Pixels(Sides sides) {
  return std::int64_t{sides.rows} * sides.cols;
}

// The compressor that charged its header most left the fewest bits for the stream.
bool FillsBudget(const Coder& coder, const FileInfo& info) {
  if (!info.budget) return false;
  const int charge = std::max(coder.encoderCharge, coder.regionCharge);
  return info.bitsPresent >= std::int64_t{*info.budget} - charge;
}

}  // namespace

FileHeader CheckedHeader(ByteView file, FileKind kind, std::int64_t maxPixels) {
  const FileHeader header = ReadHeader(file, CoderOf(kind).HasBudget());
  const std::int64_t pixels = Pixels(header.sides);
  if (pixels > maxPixels) {
    Fail(Errc::kLimit, "The image has " + Text(header.sides) + " = " + std::to_string(pixels) +
                           " pixels; the limit is " + std::to_string(maxPixels) + ".");
  }
  if (header.levels > LevelLimitOf(header.sides, header.wavelet, header.padded)) {
    Fail(Errc::kMalformed, "Not a file of ours: an image of " + Text(header.sides) +
                               " cannot have " + std::to_string(header.levels) + " levels.");
  }
  return header;
}

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
  return InfoOf(CheckedHeader(start, kind, maxPixels), kind,
                std::max<std::int64_t>(0, fileBytes - header));
}

FileInfo Inspect(ByteView file, FileKind kind, std::int64_t maxPixels) {
  return InspectStart(file, static_cast<std::int64_t>(file.size()), kind, maxPixels);
}

std::int64_t UsefulBytes(const FileInfo& info) {
  if (info.kind == FileKind::kAwh) return UsefulContextBytes(info);
  const auto header = static_cast<std::int64_t>(HeaderSize(info.budget.has_value()));
  if (info.budget) return header + std::max(0, *info.budget) / 8 + kBytesBeyondBudget;
  return header + kBytesPerPixel * Pixels({info.codedRows, info.codedCols}) + kBytesOfPasses;
}

}  // namespace marovia
