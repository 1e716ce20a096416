#include "marovia/codec.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <future>
#include <string>
#include <utility>

#include "base/number_text.h"
#include "codec/compression.h"
#include "codec/context_kind.h"
#include "codec/decompression.h"
#include "codec/geometry.h"
#include "codec/quality_target.h"
#include "measures/region.h"
#include "wavelet/catalogue.h"

namespace marovia {
namespace {

void CheckPsnr(const CompressOptions& options) {
  if (!(std::isfinite(*options.psnr) && *options.psnr > 0)) {
    Fail(Errc::kInvalidArgument,
         "The PSNR is" + NumberText(*options.psnr) + " decibels; it must be above 0.");
  }
  // Where the bits of a region begin depends on the budget: a start of such a file is none.
  if (options.region || options.bytes) {
    Fail(Errc::kInvalidArgument, "A PSNR goes with neither a region nor a number of bytes.");
  }
}

bool IsLossless(const CompressOptions& options) {
  return options.lossless || CoderOf(options.kind).lossless;
}

void CheckLossless(const CompressOptions& options) {
  if (!options.lossless || CoderOf(options.kind).lossless || options.kind == FileKind::kAwh) return;
  Fail(Errc::kInvalidArgument, "A file of the kind " + std::string(Extension(options.kind)) +
                                   " cannot be lossless; awg and awh can.");
}

WaveletKind WaveletOf(const CompressOptions& options) {
  return options.wavelet.value_or(IsLossless(options) ? WaveletKind::kInteger22
                                                      : WaveletKind::kDaub97);
}

void CheckWavelet(const CompressOptions& options) {
  const bool lossless = IsLossless(options);
  const bool padded = options.pad || options.kind == FileKind::kAwh;
  if (lossless && padded && !IsInteger(WaveletOf(options))) {
    Fail(Errc::kInvalidArgument,
         "The 9/7 wavelet is not lossless; 5/3 and 2+2,2, the integer wavelets, are.");
  }
  if (options.bestWavelet && (options.wavelet || !lossless)) {
    Fail(Errc::kInvalidArgument,
         "The best wavelet is chosen in lossless coding, and where none is named.");
  }
}

void CheckOptions(const Image& image, const CompressOptions& options) {
  const bool hasBudget = CoderOf(options.kind).HasBudget();
  if (options.levels && *options.levels < 1) {
    Fail(Errc::kInvalidArgument,
         "The number of levels is " + std::to_string(*options.levels) + "; it must be 1 or more.");
  }
  CheckLossless(options);
  CheckWavelet(options);
  if (hasBudget && options.bytes && *options.bytes < 1) {
    Fail(Errc::kInvalidArgument, "The file is to have " + std::to_string(*options.bytes) +
                                     " bytes; that must be 1 or more.");
  }
  if (hasBudget && !options.bytes && !(std::isfinite(options.rate) && options.rate > 0)) {
    Fail(Errc::kInvalidArgument,
         "The rate is" + NumberText(options.rate) + " bits per pixel; it must be above 0.");
  }
  if (options.region) CheckRegion(*options.region, image, Errc::kInvalidArgument);
  if (hasBudget && options.psnr) CheckPsnr(options);
}

// Keeps every report and passes it on. The list must outlive the listener.
PassListener Collector(std::vector<PassReport>& reports, const PassListener& next) {
  return [&reports, next](const PassReport& report) {
    reports.push_back(report);
    if (next) next(report);
  };
}

Sides SidesOf(const Image& image) {
  return {image.Rows(), image.Cols()};
}

int ChooseLevels(const Image& image, const CompressOptions& options) {
  const Sides sides = SidesOf(image);
  if (!options.levels) return DefaultLevels(sides, WaveletOf(options));
  const int limit = LevelLimitOf(sides, WaveletOf(options), options.pad);
  return std::min(*options.levels, limit);
}

// One run; a lossless one has no use for the budget.
CompressResult CompressOnce(const Image& image, const CompressOptions& options,
                            std::int32_t budget) {
  const Coder& coder = CoderOf(options.kind);
  CompressResult result;
  result.wavelet = WaveletOf(options);
  result.levels = ChooseLevels(image, options);
  Compression run(coder, image, result.wavelet, options.pad);
  if (LevelLimitOf(SidesOf(image), result.wavelet, options.pad) < 0) {
    Fail(Errc::kInvalidArgument, "An image with a side of 1 or 2 cannot be coded without padding.");
  }
  if (coder.HasBudget()) run.SetBudget(budget);
  run.SetLevels(result.levels);
  run.Transform();
  run.SubtractMean();
  run.ChooseThreshold();
  if (options.region) run.SetRegion(*options.region, options.share);
  const PassListener listener = Collector(result.passes, options.onPass);
  listener(run.WritePasses(listener));
  result.mean = run.Header().mean;
  result.exponent = run.Header().exponent;
  result.file = run.TakeFile();
  return result;
}

// Tries are quiet; what the one that is kept had to report comes afterwards.
CompressOptions Quiet(CompressOptions options) {
  options.onPass = {};
  return options;
}

void Replay(const CompressResult& result, const PassListener& onPass) {
  if (!onPass) return;
  for (const PassReport& report : result.passes) onPass(report);
}

// The budget is lowered by what a try was too long: a last group of symbols may exceed the budget,
// and an arithmetic stream is closed with a few bits more.
CompressResult CompressToBytes(const Image& image, const CompressOptions& options) {
  constexpr std::int64_t kTypicalExcessBits = 16;
  const std::int64_t most = *options.bytes;
  const CompressOptions quiet = Quiet(options);
  std::int64_t bits = std::min<std::int64_t>(8 * std::min(most, std::int64_t{1} << 28), INT32_MAX) -
                      kTypicalExcessBits;
  while (bits >= 0) {
    CompressResult result = CompressOnce(image, quiet, static_cast<std::int32_t>(bits));
    const std::int64_t excess = static_cast<std::int64_t>(result.file.size()) - most;
    if (excess <= 0) {
      Replay(result, options.onPass);
      return result;
    }
    bits -= 8 * excess;
  }
  Fail(Errc::kInvalidArgument,
       "A file of this image does not fit " + std::to_string(most) + " bytes.");
}

// The rates of the long files that are searched: what most targets need at the most, and what is
// more than any image has use for.
constexpr std::array kSearchedRates = {4.0, 32.0};

std::int32_t BudgetForPsnr(const Image& image, const CompressOptions& options) {
  double best = 0;
  for (const double rate : kSearchedRates) {
    const double bits = std::min<double>(rate * static_cast<double>(image.Size()), INT32_MAX);
    const Bytes file = CompressOnce(image, options, static_cast<std::int32_t>(bits)).file;
    const auto budget = BudgetForPsnr(image, file, options.kind, *options.psnr);
    if (budget) return *budget;
    best = PsnrOfFile(image, file, options.kind);
  }
  FailOutOfReach(*options.psnr, best);
}

// A compressor may charge its header more than a decompressor, so that its file ends a little
// earlier than the start that was found.
CompressResult CompressToPsnr(const Image& image, const CompressOptions& options) {
  const CompressOptions quiet = Quiet(options);
  for (std::int32_t bits = BudgetForPsnr(image, quiet);; bits += 8) {
    CompressResult result = CompressOnce(image, quiet, bits);
    if (PsnrOfFile(image, result.file, options.kind) < *options.psnr) continue;
    Replay(result, options.onPass);
    return result;
  }
}

// With both integer wavelets at once.
CompressResult CompressToTheShorter(const Image& image, const CompressOptions& options) {
  const auto tried = [&](WaveletKind wavelet) {
    CompressOptions quiet = Quiet(options);
    quiet.wavelet = wavelet;
    quiet.bestWavelet = false;
    return Compress(image, quiet);
  };
  // Where no thread is to be had it runs in this one.
  auto other =
      std::async(std::launch::async | std::launch::deferred, tried, WaveletKind::kInteger53);
  CompressResult result = tried(WaveletKind::kInteger22);
  CompressResult second = other.get();
  if (second.file.size() < result.file.size()) result = std::move(second);
  Replay(result, options.onPass);
  return result;
}

}  // namespace

CompressResult Compress(const Image& image, const CompressOptions& options) {
  CheckOptions(image, options);
  if (options.bestWavelet) return CompressToTheShorter(image, options);
  if (options.kind == FileKind::kAwh) return CompressContext(image, options, WaveletOf(options));
  if (!CoderOf(options.kind).HasBudget()) return CompressOnce(image, options, 0);
  if (options.psnr) return CompressToPsnr(image, options);
  if (options.bytes) return CompressToBytes(image, options);
  return CompressOnce(image, options, BitBudget(options.rate, SidesOf(image)));
}

DecompressResult Decompress(ByteView file, FileKind kind, const DecompressOptions& options) {
  if (kind == FileKind::kAwh) return DecompressContext(file, options);
  Decompression run(file, kind, options.maxPixels);
  DecompressResult result;
  result.info = run.Info();
  if (options.rate && CoderOf(kind).HasBudget()) {
    result.rateHeld =
        run.HoldBudget(BitBudget(*options.rate, {result.info.rows, result.info.cols}));
  }
  const PassListener listener = Collector(result.passes, options.onPass);
  listener(run.ReadPasses(listener));
  result.truncated = run.Truncated();
  result.image = run.Invert();
  return result;
}

}  // namespace marovia
