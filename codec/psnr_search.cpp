#include "codec/psnr_search.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "marovia/error.h"
#include "marovia/measures.h"

#include "base/number_text.h"

namespace marovia {
namespace {

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

}  // namespace

double PsnrOfPicture(const Image& image, const Image& picture) {
  const auto psnr = Measure(image, picture).psnr;
  return psnr ? double{*psnr} : std::numeric_limits<double>::infinity();
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

void FailOutOfReach(double psnr, double best) {
  Fail(Errc::kInvalidArgument, "A PSNR of" + NumberText(psnr) +
                                   " decibels is out of reach; the most is" + NumberText(best) +
                                   ".");
}

}  // namespace marovia
