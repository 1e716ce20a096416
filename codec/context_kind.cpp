#include "codec/context_kind.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "base/number_text.h"
#include "codec/compression.h"
#include "codec/psnr_search.h"
#include "codec/tries.h"
#include "context/context_codec.h"
#include "format/file_header.h"
#include "wavelet/catalogue.h"

namespace marovia {
namespace {

constexpr auto kHeaderBytes = static_cast<std::int64_t>(kContextHeaderBytes);
// More than any image's complete file has, for each coefficient and besides.
constexpr std::int64_t kBytesPerCell = 8;
constexpr std::int64_t kBytesBesides = 4096;
// Coefficients of the 9/7 wavelet are counted in sixteenths.
constexpr int kFractionBits = 4;

int FractionBits(WaveletKind wavelet) {
  return IsInteger(wavelet) ? 0 : kFractionBits;
}

FileInfo InfoOf(const ContextHeader& header, std::int64_t fileBytes) {
  FileInfo info;
  info.kind = FileKind::kAwh;
  info.wavelet = header.wavelet;
  info.levels = header.levels;
  info.rows = header.rows;
  info.cols = header.cols;
  info.codedRows = header.PaddedRows();
  info.codedCols = header.PaddedCols();
  info.mean = std::ldexp(static_cast<float>(header.mean), -FractionBits(header.wavelet));
  info.exponent = header.planes - FractionBits(header.wavelet);
  info.bitsPresent = 8 * std::max<std::int64_t>(0, fileBytes - kHeaderBytes);
  return info;
}

// What planes report, as passes. The first plane tells how many there are.
class Passes {
 public:
  Passes(WaveletKind wavelet, const PassListener& onPass) : wavelet_(wavelet), onPass_(onPass) {}

  PlaneListener Listener() {
    return [this](const PlaneReport& report) { Tell(report); };
  }

  void Tell(const PlaneReport& report) {
    if (passes_.empty()) planes_ = report.plane + 1;
    last_ = report;
    passes_.push_back(PassOf(report));
    if (onPass_) onPass_(passes_.back());
  }

  // Where a writer ended is where its last plane did.
  std::vector<PassReport> ClosedAt(std::int64_t bytes) && {
    PlaneReport closing = last_;
    closing.bytes = bytes;
    return std::move(*this).ClosedBy(closing);
  }
  std::vector<PassReport> ClosedBy(const PlaneReport& report) && {
    Tell(report);
    return std::move(passes_);
  }

 private:
  [[nodiscard]] PassReport PassOf(const PlaneReport& report) const {
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    return {.pass = planes_ - report.plane,
            .threshold = std::ldexp(1.0F, report.plane - FractionBits(wavelet_)),
            .significant = static_cast<std::int32_t>(report.found),
            .bits = static_cast<std::int32_t>(std::min(kMost, 8 * report.bytes))};
  }

  WaveletKind wavelet_;
  const PassListener& onPass_;
  int planes_ = 0;
  PlaneReport last_;
  std::vector<PassReport> passes_;
};

void CheckLossless(const CompressOptions& options) {
  if (options.bytes || options.psnr) {
    Fail(Errc::kInvalidArgument, "Lossless goes with neither a number of bytes nor a PSNR.");
  }
  if (options.region) {
    Fail(Errc::kInvalidArgument,
         "A region needs a rate or a number of bytes: a lossless file of this kind has none.");
  }
}

// A rate's bits as whole bytes, of which a header is the least.
std::int64_t BytesAt(double rate, int rows, int cols) {
  return std::max<std::int64_t>(kHeaderBytes, BitBudget(rate, {rows, cols}) / 8);
}

std::int64_t BytesOf(const Image& image, const CompressOptions& options) {
  if (options.lossless) return 0;
  return options.bytes ? *options.bytes : BytesAt(options.rate, image.Rows(), image.Cols());
}

CompressResult ResultOf(Bytes file) {
  const ContextHeader header = ReadContextHeader(file, std::numeric_limits<std::int64_t>::max());
  const FileInfo info = InfoOf(header, std::ssize(file));
  return {.file = std::move(file),
          .wavelet = info.wavelet,
          .levels = info.levels,
          .mean = info.mean,
          .exponent = info.exponent,
          .passes = {}};
}

ContextPicture Decoded(ByteView file, const PlaneListener& onPlane, int threads) {
  return DecodeContext(file, {.maxPixels = std::numeric_limits<std::int64_t>::max(),
                              .onPlane = onPlane,
                              .threads = threads});
}

// The start of the complete file that is just good enough.
CompressResult StartOfPsnr(const Image& image, Bytes file, const CompressOptions& options) {
  const auto psnrOf = [&](std::int64_t bytes) {
    const ByteView start = ByteView(file).first(static_cast<std::size_t>(bytes));
    return PsnrOfPicture(image,
                         Decoded(start, TryListener<PlaneReport>(options), options.threads).image);
  };
  const auto bytes = LeastBytesForPsnr(*options.psnr, kHeaderBytes, std::ssize(file), psnrOf);
  if (!bytes) FailOutOfReach(*options.psnr, psnrOf(std::ssize(file)));
  file.resize(static_cast<std::size_t>(*bytes));
  CompressResult result = ResultOf(std::move(file));
  Passes passes(result.wavelet, options.onPass);
  const PlaneReport last = Decoded(result.file, passes.Listener(), options.threads).last;
  result.passes = std::move(passes).ClosedBy(last);
  return result;
}

}  // namespace

CompressResult CompressContext(const Image& image, const CompressOptions& options,
                               WaveletKind wavelet) {
  if (options.lossless) CheckLossless(options);
  ContextOptions coding{.wavelet = wavelet, .levels = options.levels, .threads = options.threads};
  if (options.psnr) {
    coding.onPlane = TryListener<PlaneReport>(options);
    return StartOfPsnr(image, EncodeContext(image, coding), options);
  }
  Passes passes(wavelet, options.onPass);
  coding.bytes = BytesOf(image, options);
  coding.region = options.region;
  coding.share = HeldShare(options.share);
  coding.onPlane = passes.Listener();
  CompressResult result = ResultOf(EncodeContext(image, coding));
  result.passes = std::move(passes).ClosedAt(std::ssize(result.file));
  return result;
}

DecompressResult DecompressContext(ByteView file, const DecompressOptions& options) {
  const ContextHeader header = ReadContextHeader(file, options.maxPixels);
  DecompressResult result;
  result.info = InfoOf(header, std::ssize(file));
  if (options.rate) {
    const std::int64_t wanted = BytesAt(*options.rate, header.rows, header.cols);
    result.rateHeld = wanted > std::ssize(file);
    if (!result.rateHeld) file = file.first(static_cast<std::size_t>(wanted));
  }
  Passes passes(header.wavelet, options.onPass);
  ContextPicture picture = DecodeContext(file, {.maxPixels = options.maxPixels,
                                                .onPlane = passes.Listener(),
                                                .threads = options.threads,
                                                .reduce = options.reduce});
  result.passes = std::move(passes).ClosedBy(picture.last);
  result.truncated = result.rateHeld && !picture.complete;
  result.image = std::move(picture.image);
  return result;
}

FileInfo InspectContext(ByteView start, std::int64_t fileBytes, std::int64_t maxPixels) {
  return InfoOf(ReadContextHeader(start, maxPixels), fileBytes);
}

std::int64_t UsefulContextBytes(const FileInfo& info) {
  if (info.budget) return kHeaderBytes + std::max(0, *info.budget) / 8;
  return kHeaderBytes + kBytesPerCell * info.codedRows * info.codedCols + kBytesBesides;
}

std::int64_t ContextCut(ByteView file, const TruncateOptions& options) {
  const ContextHeader header = ReadContextHeader(file, options.maxPixels);
  const std::int64_t wanted =
      options.bytes ? *options.bytes : BytesAt(*options.rate, header.rows, header.cols);
  if (wanted < kHeaderBytes) {
    Fail(Errc::kInvalidArgument,
         "A shorter file does not fit " + std::to_string(wanted) + " bytes.");
  }
  return std::min<std::int64_t>(wanted, std::ssize(file));
}

}  // namespace marovia
