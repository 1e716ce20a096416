#include "codec/targets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <future>
#include <limits>
#include <string>
#include <utility>

#include "marovia/measures.h"

#include "base/number_text.h"
#include "codec/decompression.h"
#include "codec/one_run.h"

namespace marovia {
namespace {

CompressOptions Quiet(CompressOptions options) {
  options.onPass = {};
  return options;
}

void Replay(const CompressResult& result, const PassListener& onPass) {
  if (!onPass) return;
  for (const PassReport& report : result.passes) onPass(report);
}

constexpr std::int64_t kAnyPixels = std::numeric_limits<std::int64_t>::max();

double PsnrOf(const Image& image, Decompression& run) {
  run.ReadPasses({});
  const auto psnr = Measure(image, run.Invert()).psnr;
  return psnr ? double{*psnr} : std::numeric_limits<double>::infinity();
}

// A start of the file, and by how much its PSNR exceeds the target.
struct Start {
  std::int32_t bytes;
  double excess;
};

// Between two starts the PSNR goes about with the logarithm of their lengths.
double Interpolated(const Start& low, const Start& high) {
  const double part = std::isfinite(high.excess) ? low.excess / (low.excess - high.excess) : 0.5;
  return low.bytes * std::pow(static_cast<double>(high.bytes) / low.bytes, part);
}

constexpr std::int32_t kLeastBytes = 16;  // what a header is charged

// The PSNR of what a file decodes to against its image; infinite where they are the same.
double PsnrOfFile(const Image& image, ByteView file, FileKind kind) {
  Decompression run(file, kind, kAnyPixels);
  return PsnrOf(image, run);
}

// The least budget, in bits, at which a long file of the image decodes to `psnr` decibels or more;
// none where all of it is not enough. Every budget is tried on that one file.
std::optional<std::int32_t> BudgetInFile(const Image& image, ByteView file, FileKind kind,
                                         double psnr) {
  const auto tried = [&](std::int32_t bytes) {
    Decompression run(file, kind, kAnyPixels);
    run.SetBudget(8 * std::int64_t{bytes});
    return Start{bytes, PsnrOf(image, run) - psnr};
  };
  const std::int32_t all = *Inspect(file, kind, kAnyPixels).budget / 8;
  Start low = tried(kLeastBytes);
  if (low.excess >= 0) return 8 * low.bytes;
  Start high = tried(std::max(all, kLeastBytes + 1));
  if (high.excess < 0) return std::nullopt;
  // Every other step halves what is left, however far off the guesses are.
  for (bool guess = true; high.bytes - low.bytes > 1; guess = !guess) {
    const auto bytes = guess ? static_cast<std::int32_t>(Interpolated(low, high))
                             : low.bytes + (high.bytes - low.bytes) / 2;
    const Start next = tried(std::clamp(bytes, low.bytes + 1, high.bytes - 1));
    (next.excess < 0 ? low : high) = next;
  }
  return 8 * high.bytes;
}

// The rates of the long files that are searched: what most targets need at the most, and what is
// more than any image has use for.
constexpr std::array kSearchedRates = {4.0, 32.0};

std::int32_t BudgetForPsnr(const Image& image, const CompressOptions& options) {
  double best = 0;
  for (const double rate : kSearchedRates) {
    const double bits = std::min<double>(rate * static_cast<double>(image.Size()), INT32_MAX);
    const Bytes file = CompressOnce(image, options, static_cast<std::int32_t>(bits)).file;
    const auto budget = BudgetInFile(image, file, options.kind, *options.psnr);
    if (budget) return *budget;
    best = PsnrOfFile(image, file, options.kind);
  }
  Fail(Errc::kInvalidArgument, "A PSNR of" + NumberText(*options.psnr) +
                                   " decibels is out of reach; the most is" + NumberText(best) +
                                   ".");
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
    if (PsnrOfFile(image, result.file, options.kind) < *options.psnr) continue;
    Replay(result, options.onPass);
    return result;
  }
}

CompressResult CompressToTheShorter(const Image& image, const CompressOptions& options) {
  const auto tried = [&](WaveletKind wavelet) {
    CompressOptions quiet = Quiet(options);
    quiet.wavelet = wavelet;
    return CompressOnce(image, quiet, 0);
  };
  auto [result, second] = Both([&] { return tried(WaveletKind::kInteger22); },
                               [&] { return tried(WaveletKind::kInteger53); });
  if (second.file.size() < result.file.size()) result = std::move(second);
  Replay(result, options.onPass);
  return result;
}

}  // namespace marovia
