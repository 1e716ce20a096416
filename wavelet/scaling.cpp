#include <algorithm>
#include <cmath>
#include <vector>

#include "base/checked.h"
#include "base/parallel.h"
#include "wavelet/catalogue.h"
#include "wavelet/transform.h"

namespace marovia {
namespace {

// ends[l] is the side of the corner that the level l + 1 scales, the last entry the low band's.
std::vector<int> ScaledSides(int side, int levels) {
  std::vector<int> ends{side};
  for (int level = 0; level < levels; ++level) {
    side = ToInt16(side / 2.0);
    ends.push_back(side);
  }
  return ends;
}

int CountCovering(const std::vector<int>& ends, int position) {
  return static_cast<int>(
      std::count_if(ends.begin(), ends.end(), [position](int end) { return position < end; }));
}

template <class Action>
void ForLowBand(Grid<float>& coefficients, int levels, Action action) {
  const auto cols = static_cast<std::size_t>(coefficients.Cols() >> levels);
  for (int r = 0; r < coefficients.Rows() >> levels; ++r) {
    for (float& coefficient : coefficients.Row(r).first(cols)) action(coefficient);
  }
}

}  // namespace

void ScalingOfWT(Grid<float>& coefficients, int levels, Direction direction, int threads) {
  const std::vector<int> rowEnds = ScaledSides(coefficients.Rows(), levels);
  const std::vector<int> colEnds = ScaledSides(coefficients.Cols(), levels);
  const auto scaleRow = [&](int r) {
    const auto row = coefficients.Row(r);
    const int most = CountCovering(rowEnds, r);
    // The corners are nested: from the i-th column end on, only i corners cover a column.
    std::size_t first = 0;
    for (int covering = levels + 1; covering >= 1; --covering) {
      const auto end = static_cast<std::size_t>(colEnds[static_cast<std::size_t>(covering - 1)]);
      const int power = std::min(covering, most);
      const float factor = std::ldexp(1.0F, direction == Direction::kForward ? power : -power);
      for (; first < end; ++first) row[first] *= factor;
    }
  };
  RunShares(UsefulThreads(threads, coefficients.Size()), [&](Share share) {
    const auto rows = share.Of(static_cast<std::size_t>(coefficients.Rows()));
    for (std::size_t r = rows.first; r < rows.last; ++r) scaleRow(static_cast<int>(r));
  });
}

float SubtractAverage(Grid<float>& coefficients, WaveletKind wavelet, int levels) {
  float sum = 0;
  ForLowBand(coefficients, levels, [&sum](float coefficient) { sum += coefficient; });
  const int count = (coefficients.Rows() >> levels) * (coefficients.Cols() >> levels);
  const float mean = IsInteger(wavelet)
                         ? static_cast<float>(ToInt32(static_cast<double>(sum) / count))
                         : sum / static_cast<float>(count);
  ForLowBand(coefficients, levels, [mean](float& coefficient) { coefficient -= mean; });
  return mean;
}

void AddAverage(Grid<float>& coefficients, int levels, float mean) {
  ForLowBand(coefficients, levels, [mean](float& coefficient) { coefficient += mean; });
}

}  // namespace marovia
