#include "chart/ticks.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace marovia {
namespace {

double NiceStep(double rough) {
  const double power = std::pow(10.0, std::floor(std::log10(rough)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= rough * 0.999) return factor * power;
  }
  return 10 * power;
}

}  // namespace

Axis NiceAxis(double least, double most, int count) {
  if (!(most > least)) most = least + 1;
  const double step = NiceStep((most - least) / count);
  const auto first = static_cast<long>(std::floor(least / step + 1e-9));
  const auto last = static_cast<long>(std::ceil(most / step - 1e-9));
  Axis axis;
  for (long n = first; n <= last; ++n) axis.ticks.push_back(static_cast<double>(n) * step);
  axis.from = axis.ticks.front();
  axis.to = axis.ticks.back();
  axis.digits = std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
  return axis;
}

std::string FixedText(double value, int digits) {
  std::array<char, 64> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                 std::chars_format::fixed, digits);
  return {text.data(), end.ptr};
}

}  // namespace marovia
