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
  std::int64_t bytes;
  double excess;
};

// Between two starts the PSNR goes about with the logarithm of their lengths.
double Interpolated(const Start& low, const Start& high) {
  const double part = std::isfinite(high.excess) ? low.excess / (low.excess - high.excess) : 0.5;
  const auto bytes = static_cast<double>(low.bytes);
  return bytes * std::pow(static_cast<double>(high.bytes) / bytes, part);
}

}  // namespace

double PsnrOfFile(const Image& image, ByteView file, FileKind kind) {
  Decompression run(file, kind, kAnyPixels);
  return PsnrOf(image, run);
}

std::optional<std::int64_t> BytesForPsnr(const Image& image, ByteView file, FileKind kind,
                                         double psnr, std::int64_t atLeast) {
  const auto tried = [&](std::int64_t bytes) {
    Decompression run(file, kind, kAnyPixels);
    run.SetBudget(std::min(8 * bytes, std::int64_t{*run.Info().budget}));
    return Start{bytes, PsnrOf(image, run) - psnr};
  };
  Start low = tried(atLeast);
  if (low.excess >= 0) return atLeast;
  Start high = tried(std::max(static_cast<std::int64_t>(file.size()), atLeast + 1));
  if (high.excess < 0) return std::nullopt;
  // Every other step halves what is left, however far off the guesses are.
  for (bool guess = true; high.bytes - low.bytes > 1; guess = !guess) {
    const std::int64_t bytes =
        guess ? static_cast<std::int64_t>(Interpolated(low, high)) : (low.bytes + high.bytes) / 2;
    const Start next = tried(std::clamp(bytes, low.bytes + 1, high.bytes - 1));
    (next.excess < 0 ? low : high) = next;
  }
  return high.bytes;
}

}  // namespace marovia
