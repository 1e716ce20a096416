#include "format/geometry.h"

#include <algorithm>
#include <string>

#include "marovia/error.h"

#include "wavelet/catalogue.h"

namespace marovia {
namespace {

constexpr int kMostDefaultLevels = 6;
constexpr int kLeastDefaultLevels = 3;
constexpr double kMostPadding = 1.06;

}  // namespace

void CheckSides(Sides sides) {
  const int longest = std::max(sides.rows, sides.cols);
  if (longest <= kMostSide) return;
  Fail(Errc::kLimit, "A side of " + std::to_string(longest) + " exceeds " +
                         std::to_string(kMostSide) + ", the most that a file can hold.");
}

int LevelLimitOf(Sides sides, WaveletKind wavelet, bool pad) {
  if (!pad) return LevelLimit(sides.rows, sides.cols, wavelet);
  const auto [rows, cols] = PaddedSides(sides, 0);
  return std::min(LevelLimit(rows, cols, wavelet), kMostPaddedLevels);
}

int DefaultLevels(Sides sides, WaveletKind wavelet) {
  const int limit = std::max(0, LevelLimitOf(sides, wavelet, true));
  for (int levels = std::min(limit, kMostDefaultLevels); levels > kLeastDefaultLevels; --levels) {
    const auto padded = static_cast<double>(PaddedSides(sides, levels).Pixels());
    if (padded <= kMostPadding * static_cast<double>(sides.Pixels())) return levels;
  }
  return std::min(limit, kLeastDefaultLevels);
}

Image Padded(const Image& image, int levels) {
  const Sides sides = PaddedSides({image.Rows(), image.Cols()}, levels);
  Image padded(sides.rows, sides.cols);
  for (int r = 0; r < sides.rows; ++r) {
    const auto source = image.Row(std::min(r, image.Rows() - 1));
    const auto row = padded.Row(r);
    std::fill(std::copy(source.begin(), source.end(), row.begin()), row.end(), source.back());
  }
  return padded;
}

Image Cropped(const Image& image, Sides sides) {
  Image cropped(sides.rows, sides.cols);
  for (int r = 0; r < sides.rows; ++r) {
    std::copy_n(image.Row(r).begin(), static_cast<std::size_t>(sides.cols), cropped.Row(r).begin());
  }
  return cropped;
}

}  // namespace marovia
