#include "explore/difference.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace marovia {
namespace {

// Below this no view asks for less.
constexpr int kLeastSide = 64;

// Means of 2 x 2 pixels; a last odd row or column is left out.
Image Halved(const Image& image) {
  Image half(image.Rows() / 2, image.Cols() / 2, Unfilled{});
  for (int r = 0; r < half.Rows(); ++r) {
    const auto* one = image.Row(2 * r).data();
    const auto* other = image.Row(2 * r + 1).data();
    const auto to = half.Row(r);
    for (std::size_t c = 0; c < to.size(); ++c) {
      const unsigned sum = 2U + one[2 * c] + one[2 * c + 1] + other[2 * c] + other[2 * c + 1];
      to[c] = static_cast<std::uint8_t>(sum / 4);
    }
  }
  return half;
}

}  // namespace

Image MagnitudeImage(const Image& source, const Image& picture, int gain) {
  Image magnitude(source.Rows(), source.Cols(), Unfilled{});
  std::ranges::transform(
      source.Samples(), picture.Samples(), magnitude.Samples().begin(), [gain](int one, int other) {
        return static_cast<std::uint8_t>(std::min(255, gain * std::abs(one - other)));
      });
  return magnitude;
}

Pyramid::Pyramid(std::shared_ptr<const Image> image) {
  steps_.push_back(std::move(image));
  while (std::min(steps_.back()->Rows(), steps_.back()->Cols()) >= 2 * kLeastSide)
    steps_.push_back(std::make_shared<const Image>(Halved(*steps_.back())));
}

const Image& Pyramid::ForScale(double scale) const {
  const double halvings = std::floor(std::log2(1 / std::max(scale, 1e-9)));
  const auto step = static_cast<std::size_t>(std::max(0.0, halvings));
  return *steps_[std::min(step, steps_.size() - 1)];
}

}  // namespace marovia
