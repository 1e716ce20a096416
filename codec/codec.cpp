#include "marovia/codec.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "base/number_text.h"
#include "codec/compression.h"
#include "codec/decompression.h"
#include "measures/region.h"
#include "wavelet/catalogue.h"

namespace marovia {
namespace {

void CheckOptions(const Image& image, const CompressOptions& options) {
  const Coder& coder = CoderOf(options.kind);
  if (options.levels && *options.levels < 1) {
    Fail(Errc::kInvalidArgument,
         "The number of levels is " + std::to_string(*options.levels) + "; it must be 1 or more.");
  }
  if (coder.lossless && options.pad && !IsInteger(options.wavelet)) {
    Fail(Errc::kInvalidArgument,
         "The 9/7 wavelet is not lossless; 5/3 and 2+2,2, the integer wavelets, are.");
  }
  if (coder.HasBudget() && !options.bytes && !(std::isfinite(options.rate) && options.rate > 0)) {
    Fail(Errc::kInvalidArgument,
         "The rate is" + NumberText(options.rate) + " bits per pixel; it must be above 0.");
  }
  if (options.region) CheckRegion(*options.region, image, Errc::kInvalidArgument);
}

// Keeps every report and passes it on. The list must outlive the listener.
PassListener Collector(std::vector<PassReport>& reports, const PassListener& next) {
  return [&reports, next](const PassReport& report) {
    reports.push_back(report);
    if (next) next(report);
  };
}

int ChooseLevels(const Image& image, const CompressOptions& options) {
  const Sides sides{image.Rows(), image.Cols()};
  if (!options.levels) return DefaultLevels(sides, options.wavelet);
  const int limit = LevelLimitOf(sides, options.wavelet, options.pad);
  return std::min(*options.levels, limit);
}

// One run; the budget's bits in place of the rate where they are given.
CompressResult CompressOnce(const Image& image, const CompressOptions& options,
                            const std::optional<std::int32_t>& bits) {
  const Coder& coder = CoderOf(options.kind);
  CompressResult result;
  result.levels = ChooseLevels(image, options);
  Compression run(coder, image, options.wavelet, options.pad);
  if (LevelLimitOf({image.Rows(), image.Cols()}, options.wavelet, options.pad) < 0) {
    Fail(Errc::kInvalidArgument, "An image with a side of 1 or 2 cannot be coded without padding.");
  }
  if (coder.HasBudget()) {
    if (bits) {
      run.WriteBudgetBits(*bits);
    } else {
      run.WriteBudget(options.rate);
    }
  }
  run.WriteLevels(result.levels);
  run.Transform();
  run.WriteMean();
  run.WriteThreshold();
  if (options.region) run.SetRegion(*options.region, options.share);
  const PassListener listener = Collector(result.passes, options.onPass);
  listener(run.WritePasses(listener));
  result.mean = run.Mean();
  result.exponent = run.Exponent();
  result.file = run.TakeFile();
  return result;
}

// The budget is lowered by what a try was too long: a last group of symbols may exceed the budget,
// and an arithmetic stream is closed with a few bits more.
CompressResult CompressToBytes(const Image& image, const CompressOptions& options) {
  constexpr std::int64_t kTypicalExcessBits = 16;
  const std::int64_t most = *options.bytes;
  CompressOptions quiet = options;
  quiet.onPass = {};
  std::int64_t bits = std::min<std::int64_t>(8 * std::min(most, std::int64_t{1} << 28), INT32_MAX) -
                      kTypicalExcessBits;
  while (bits >= 0) {
    CompressResult result = CompressOnce(image, quiet, static_cast<std::int32_t>(bits));
    const std::int64_t excess = static_cast<std::int64_t>(result.file.size()) - most;
    if (excess <= 0) {
      if (options.onPass) {
        for (const PassReport& report : result.passes) options.onPass(report);
      }
      return result;
    }
    bits -= 8 * excess;
  }
  Fail(Errc::kInvalidArgument,
       "A file of this image does not fit " + std::to_string(most) + " bytes.");
}

}  // namespace

CompressResult Compress(const Image& image, const CompressOptions& options) {
  CheckOptions(image, options);
  if (options.bytes && CoderOf(options.kind).HasBudget()) return CompressToBytes(image, options);
  return CompressOnce(image, options, std::nullopt);
}

FileInfo Inspect(ByteView file, FileKind kind, std::int64_t maxPixels) {
  return Decompression(file, kind, maxPixels).Info();
}

DecompressResult Decompress(ByteView file, FileKind kind, const DecompressOptions& options) {
  Decompression run(file, kind, options.maxPixels);
  DecompressResult result;
  result.info = run.Info();
  if (options.rate && CoderOf(kind).HasBudget()) result.rateHeld = run.SetRate(*options.rate);
  const PassListener listener = Collector(result.passes, options.onPass);
  listener(run.ReadPasses(listener));
  result.truncated = run.Truncated();
  result.image = run.Invert();
  return result;
}

}  // namespace marovia
