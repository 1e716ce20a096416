#include "explore/similarity.h"

#include <algorithm>
#include <vector>

namespace marovia {
namespace {

constexpr int kStep = 4;

// Over some pixels of both images; exact in 32 bits for a window.
struct Sums {
  std::int32_t count = 0;
  std::int32_t one = 0;
  std::int32_t other = 0;
  std::int32_t squares = 0;  // of both
  std::int32_t products = 0;

  Sums& operator+=(const Sums& more) {
    count += more.count;
    one += more.one;
    other += more.other;
    squares += more.squares;
    products += more.products;
    return *this;
  }
};

double Similarity(const Sums& sums) {
  constexpr double kLuminance = 0.01 * 255 * 0.01 * 255;
  constexpr double kContrast = 0.03 * 255 * 0.03 * 255;
  const double count = sums.count;
  const double one = sums.one / count;
  const double other = sums.other / count;
  const double means = one * one + other * other;
  const double variances = sums.squares / count - means;
  const double covariance = sums.products / count - one * other;
  return (2 * one * other + kLuminance) * (2 * covariance + kContrast) /
         ((means + kLuminance) * (variances + kContrast));
}

// Of a row of tiles, each kStep x kStep; what is left at the end of a side belongs to its last.
std::vector<Sums> TileRow(const Image& a, const Image& b, int row1, int row2, int tiles) {
  std::vector<Sums> sums(static_cast<std::size_t>(tiles));
  for (int r = row1; r < row2; ++r) {
    const auto one = a.Row(r);
    const auto other = b.Row(r);
    for (std::size_t c = 0; c < one.size(); ++c) {
      const std::size_t tile = std::min(c / kStep, sums.size() - 1);
      sums[tile] += {1, one[c], other[c], one[c] * one[c] + other[c] * other[c], one[c] * other[c]};
    }
  }
  return sums;
}

int Tiles(int side) {
  return std::max(1, side / kStep);
}

}  // namespace

double Similarity(const Image& one, const Image& other) {
  const int down = Tiles(one.Rows());
  const int across = Tiles(one.Cols());
  const auto tileRow = [&](int tile) {
    const int end = tile + 1 == down ? one.Rows() : (tile + 1) * kStep;
    return TileRow(one, other, tile * kStep, end, across);
  };
  double total = 0;
  std::vector<Sums> above = tileRow(0);
  const std::size_t wide = across > 1 ? 2 : 1;
  for (int tile = std::min(1, down - 1); tile < down; ++tile) {
    const std::vector<Sums> below = down > 1 ? tileRow(tile) : std::vector<Sums>(above.size());
    for (std::size_t i = 0; i + wide <= above.size(); ++i) {
      Sums window;
      for (std::size_t k = i; k < i + wide; ++k) (window += above[k]) += below[k];
      total += Similarity(window);
    }
    above = below;
  }
  return total / (std::max(1, down - 1) * std::max(1, across - 1));
}

}  // namespace marovia
