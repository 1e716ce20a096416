#include "codec/quality_target.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "marovia/measures.h"

#include "base/number_text.h"
#include "codec/decompression.h"

namespace marovia {
namespace {

constexpr std::int64_t kAnyPixels = std::numeric_limits<std::int64_t>::max();

double PsnrOf(const Image& image, Decompression& run) {
  run.ReadPasses({});
  return PsnrOfPicture(image, run.Invert());
}

// A length of a file, and by how much its PSNR exceeds the target.
struct Start {
  std::int64_t bytes;
  double excess;
};

// Between two starts the PSNR goes about with the logarithm of their lengths.
double Interpolated(const Start& low, const Start& high) {
  const double part = std::isfinite(high.excess) ? low.excess / (low.excess - high.excess) : 0.5;
  const auto bytes = static_cast<double>(low.bytes);
  return bytes * std::pow(static_cast<double>(high.bytes) / bytes, part);
}

constexpr std::int64_t kLeastBytes = 16;  // what a header is charged

}  // namespace

double PsnrOfPicture(const Image& image, const Image& picture) {
  const auto psnr = Measure(image, picture).psnr;
  return psnr ? double{*psnr} : std::numeric_limits<double>::infinity();
}

void FailOutOfReach(double psnr, double best) {
  Fail(Errc::kInvalidArgument, "A PSNR of" + NumberText(psnr) +
                                   " decibels is out of reach; the most is" + NumberText(best) +
                                   ".");
}

double PsnrOfFile(const Image& image, ByteView file, FileKind kind) {
  Decompression run(file, kind, kAnyPixels);
  return PsnrOf(image, run);
}

std::optional<std::int64_t> LeastBytesForPsnr(
    double psnr, std::int64_t least, std::int64_t most,
    const std::function<double(std::int64_t bytes)>& psnrOf) {
  const auto tried = [&](std::int64_t bytes) { return Start{bytes, psnrOf(bytes) - psnr}; };
  Start low = tried(least);
  if (low.excess >= 0) return least;
  Start high = tried(most);
  if (high.excess < 0) return std::nullopt;
  // Every other step halves what is left, however far off the guesses are.
  for (bool guess = true; high.bytes - low.bytes > 1; guess = !guess) {
    const auto bytes = guess ? static_cast<std::int64_t>(Interpolated(low, high))
                             : low.bytes + (high.bytes - low.bytes) / 2;
    const Start next = tried(std::clamp(bytes, low.bytes + 1, high.bytes - 1));
    (next.excess < 0 ? low : high) = next;
  }
  return high.bytes;
}

std::optional<std::int32_t> BudgetForPsnr(const Image& image, ByteView file, FileKind kind,
                                          double psnr) {
  const auto psnrOf = [&](std::int64_t bytes) {
    Decompression run(file, kind, kAnyPixels);
    run.SetBudget(8 * bytes);
    return PsnrOf(image, run);
  };
  const std::int64_t all = *Inspect(file, kind, kAnyPixels).budget / 8;
  const auto bytes = LeastBytesForPsnr(psnr, kLeastBytes, std::max(all, kLeastBytes + 1), psnrOf);
  if (!bytes) return std::nullopt;
  return static_cast<std::int32_t>(8 * *bytes);
}

}  // namespace marovia
