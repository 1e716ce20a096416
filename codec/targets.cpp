#include "codec/targets.h"

#include <algorithm>
#include <array>
#include <future>
#include <limits>
#include <string>
#include <utility>

#include "codec/decompression.h"
#include "codec/one_run.h"
#include "codec/psnr_search.h"
#include "codec/tries.h"

namespace marovia {
namespace {

CompressOptions Quiet(CompressOptions options) {
  options.onPass = TryListener<PassReport>(options);
  return options;
}

void Replay(const CompressResult& result, const PassListener& onPass) {
  if (!onPass) return;
  for (const PassReport& report : result.passes) onPass(report);
}

constexpr std::int64_t kAnyPixels = std::numeric_limits<std::int64_t>::max();

double PsnrOf(const Image& image, Decompression& run, const CompressOptions& quiet) {
  run.ReadPasses(quiet.onPass);
  return PsnrOfPicture(image, run.Invert());
}

double PsnrOfFile(const Image& image, ByteView file, const CompressOptions& quiet) {
  Decompression run(file, quiet.kind, kAnyPixels);
  return PsnrOf(image, run, quiet);
}

constexpr std::int64_t kLeastBytes = 16;  // what a header is charged

// The least budget, in bits, at which a long file of the image decodes to the PSNR or more; none
// where all of it is not enough. Every budget is tried on that one file.
std::optional<std::int32_t> BudgetInFile(const Image& image, ByteView file,
                                         const CompressOptions& quiet) {
  const auto psnrOf = [&](std::int64_t bytes) {
    Decompression run(file, quiet.kind, kAnyPixels);
    run.SetBudget(8 * bytes);
    return PsnrOf(image, run, quiet);
  };
  const std::int64_t all = *Inspect(file, quiet.kind, kAnyPixels).budget / 8;
  const auto bytes =
      LeastBytesForPsnr(*quiet.psnr, kLeastBytes, std::max(all, kLeastBytes + 1), psnrOf);
  if (!bytes) return std::nullopt;
  return static_cast<std::int32_t>(8 * *bytes);
}

// The rates of the long files that are searched: what most targets need at the most, and what is
// more than any image has use for.
constexpr std::array kSearchedRates = {4.0, 32.0};

std::int32_t BudgetForPsnr(const Image& image, const CompressOptions& quiet) {
  double best = 0;
  for (const double rate : kSearchedRates) {
    const double bits = std::min<double>(rate * static_cast<double>(image.Size()), INT32_MAX);
    const Bytes file = CompressOnce(image, quiet, static_cast<std::int32_t>(bits)).file;
    const auto budget = BudgetInFile(image, file, quiet);
    if (budget) return *budget;
    best = PsnrOfFile(image, file, quiet);
  }
  FailOutOfReach(*quiet.psnr, best);
}

// Two runs, at once where a second thread is to be had.
std::pair<CompressResult, CompressResult> Both(const auto& one, const auto& other) {
#ifdef __STDCPP_THREADS__
  auto aside = std::async(std::launch::async | std::launch::deferred, other);
  CompressResult result = one();
  return {std::move(result), aside.get()};
#else
  return {one(), other()};
#endif
}

}  // namespace

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

// A compressor may charge its header more than a decompressor, so that its file ends a little
// earlier than the start that was found.
CompressResult CompressToPsnr(const Image& image, const CompressOptions& options) {
  const CompressOptions quiet = Quiet(options);
  for (std::int32_t bits = BudgetForPsnr(image, quiet);; bits += 8) {
    CompressResult result = CompressOnce(image, quiet, bits);
    if (PsnrOfFile(image, result.file, quiet) < *options.psnr) continue;
    Replay(result, options.onPass);
    return result;
  }
}

CompressResult CompressToTheShorter(const Image& image, const CompressOptions& options) {
  const auto tried = [&](WaveletKind wavelet) {
    CompressOptions quiet = Quiet(options);
    quiet.wavelet = wavelet;
    quiet.bestWavelet = false;
    return Compress(image, quiet);
  };
  auto [result, second] = Both([&] { return tried(WaveletKind::kInteger22); },
                               [&] { return tried(WaveletKind::kInteger53); });
  if (second.file.size() < result.file.size()) result = std::move(second);
  Replay(result, options.onPass);
  return result;
}

}  // namespace marovia
