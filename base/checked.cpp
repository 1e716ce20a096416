#include "base/checked.h"

#include <cmath>
#include <limits>
#include <string>

#include "marovia/error.h"

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

template <class T>
T Narrow(std::int64_t exact, const char* type) {
  if (exact < std::numeric_limits<T>::min() || exact > std::numeric_limits<T>::max()) {
    Fail(Errc::kOverflow, "Overflow: " + std::to_string(exact) + " does not fit " + type + ".");
  }
  return static_cast<T>(exact);
}

constexpr const char* kByte = "a byte";
constexpr const char* kInt16 = "16 bits";
constexpr const char* kInt32 = "32 bits";

}  // namespace

double RoundHalfEven(double value) {
  const double below = std::floor(value);
  const double excess = value - below;
  if (excess < 0.5) return below;
  if (excess > 0.5) return below + 1;
  return std::fmod(below, 2.0) == 0 ? below : below + 1;
}

std::uint8_t ToByte(double value) {
  return Convert<std::uint8_t>(value, kByte);
}
std::int16_t ToInt16(double value) {
  return Convert<std::int16_t>(value, kInt16);
}
std::int32_t ToInt32(double value) {
  return Convert<std::int32_t>(value, kInt32);
}

std::int16_t CheckedMul16(std::int16_t a, std::int16_t b) {
  return Narrow<std::int16_t>(std::int64_t{a} * b, kInt16);
}

std::int32_t CheckedAdd32(std::int32_t a, std::int32_t b) {
  return Narrow<std::int32_t>(std::int64_t{a} + b, kInt32);
}

std::int32_t CheckedMul32(std::int32_t a, std::int32_t b) {
  return Narrow<std::int32_t>(std::int64_t{a} * b, kInt32);
}

}  // namespace marovia
