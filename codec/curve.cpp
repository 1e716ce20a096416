#include <algorithm>
#include <limits>

#include "marovia/codec.h"
#include "marovia/measures.h"

#include "codec/one_run.h"
#include "codec/tries.h"

namespace marovia {
namespace {

CompressOptions AtRate(CompressOptions options, double rate) {
  options.rate = rate;
  options.bytes.reset();
  options.psnr.reset();
  return options;
}

}  // namespace

std::vector<std::optional<float>> MeasureCurve(const Image& image, const CompressOptions& options,
                                               std::span<const double> rates) {
  if (IsLossless(options) || options.region)
    Fail(Errc::kInvalidArgument, "A curve goes with neither lossless coding nor a region.");
  std::vector<std::optional<float>> psnrs;
  if (rates.empty()) return psnrs;
  const Bytes file = Compress(image, AtRate(options, *std::ranges::max_element(rates))).file;
  DecompressOptions decompress;
  decompress.maxPixels = std::numeric_limits<std::int64_t>::max();
  decompress.threads = options.threads;
  decompress.onPass = TryListener<PassReport>(options);
  for (const double rate : rates) {
    decompress.rate = rate;
    psnrs.push_back(Measure(image, Decompress(file, options.kind, decompress).image).psnr);
  }
  return psnrs;
}

}  // namespace marovia
