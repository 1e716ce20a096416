#include "codec/quality_target.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "marovia/measures.h"

#include "codec/decompression.h"

namespace marovia {
namespace {

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

}  // namespace

double PsnrOfFile(const Image& image, ByteView file, FileKind kind) {
  Decompression run(file, kind, kAnyPixels);
  return PsnrOf(image, run);
}

std::optional<std::int32_t> BudgetForPsnr(const Image& image, ByteView file, FileKind kind,
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

}  // namespace marovia
