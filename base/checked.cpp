#include "base/checked.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <string>

#include "marovia/error.h"

#include "base/bits.h"

namespace marovia {
namespace {

template <class T>
T Convert(double value, const char* type) {
  const double rounded = RoundHalfEven(value);
  // Written so that a NaN fails as well.
  if (!(rounded >= std::numeric_limits<T>::min() && rounded <= std::numeric_limits<T>::max())) {
    Fail(Errc::kOverflow, "Overflow: " + std::to_string(value) + " does not fit " + type + ".");
  }
  return static_cast<T>(rounded);
}

}  // namespace

double RoundHalfEven(double value) {
  const double below = std::floor(value);
  const double excess = value - below;
  if (excess < 0.5) return below;
  if (excess > 0.5) return below + 1;
  return std::fmod(below, 2.0) == 0 ? below : below + 1;
}

std::uint8_t ToByte(double value) {
  return Convert<std::uint8_t>(value, "a byte");
}
std::int16_t ToInt16(double value) {
  return Convert<std::int16_t>(value, "16 bits");
}
std::int32_t ToInt32(double value) {
  return Convert<std::int32_t>(value, "32 bits");
}

std::int32_t CheckedMul32(std::int32_t a, std::int32_t b) {
  const std::int64_t exact = std::int64_t{a} * b;
  const auto product = static_cast<std::int32_t>(exact);
  if (product != exact) {
    Fail(Errc::kOverflow, "Overflow: " + std::to_string(exact) + " does not fit 32 bits.");
  }
  return product;
}

Error::Error(Errc code, const std::string& what) : std::runtime_error(what), code_(code) {}

void Fail(Errc code, const std::string& what) {
  throw Error(code, what);
}

MAROVIA_WIDE_VECTORS float LargestMagnitude(std::span<const float> values) {
  // Magnitudes are in the order of their bit patterns.
  std::int32_t largest = 0;
  for (const float value : values) {
    largest = std::max(largest, std::bit_cast<std::int32_t>(value) & INT32_MAX);
  }
  return std::bit_cast<float>(largest);
}

}  // namespace marovia
