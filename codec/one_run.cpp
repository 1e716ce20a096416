#include "codec/one_run.h"

#include <algorithm>

#include "codec/compression.h"
#include "codec/decompression.h"
#include "format/geometry.h"

namespace marovia {
namespace {

// Keeps every report and passes it on. The list must outlive the listener.
PassListener Collector(std::vector<PassReport>& reports, const PassListener& next) {
  return [&reports, next](const PassReport& report) {
    reports.push_back(report);
    if (next) next(report);
  };
}

int ChooseLevels(Sides sides, const CompressOptions& options) {
  const WaveletKind wavelet = WaveletOf(options);
  if (!options.levels) return DefaultLevels(sides, wavelet);
  return std::min(*options.levels, LevelLimitOf(sides, wavelet, options.pad));
}

}  // namespace

bool IsLossless(const CompressOptions& options) {
  return options.lossless || CoderOf(options.kind).lossless;
}

WaveletKind WaveletOf(const CompressOptions& options) {
  return options.wavelet.value_or(IsLossless(options) ? WaveletKind::kInteger22
                                                      : WaveletKind::kDaub97);
}

CompressResult CompressOnce(const Image& image, const CompressOptions& options,
                            std::int32_t budget) {
  const Sides sides{image.Rows(), image.Cols()};
  CompressResult result;
  result.wavelet = WaveletOf(options);
  result.levels = ChooseLevels(sides, options);
  Compression run(CoderOf(options.kind), image, result.wavelet, options.pad);
  run.SetThreads(options.threads);
  if (LevelLimitOf(sides, result.wavelet, options.pad) < 0) {
    Fail(Errc::kInvalidArgument, "An image with a side of 1 or 2 cannot be coded without padding.");
  }
  if (CoderOf(options.kind).HasBudget()) run.SetBudget(budget);
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

DecompressResult DecompressOnce(ByteView file, FileKind kind, const DecompressOptions& options) {
  Decompression run(file, kind, options.maxPixels);
  run.SetThreads(options.threads);
  run.Reduce(options.reduce);
  DecompressResult result;
  result.info = run.Info();
  if (options.rate && run.TheCoder().HasBudget()) {
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
