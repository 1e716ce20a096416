#include "base/shift.h"

#include <array>
#include <string>

#include "marovia/error.h"

#include "base/checked.h"

namespace marovia {
namespace {

constexpr std::array<std::int16_t, 15> kPowers = [] {
  std::array<std::int16_t, 15> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) {
    powers[i] = static_cast<std::int16_t>(2 * powers[i - 1]);
  }
  return powers;
}();

}  // namespace

std::int16_t PowerOfTwo(int exponent) {
  if (exponent < 0 || exponent >= static_cast<int>(kPowers.size())) {
    Fail(Errc::kIndex,
         "No power of two is kept for the exponent " + std::to_string(exponent) + ".");
  }
  return kPowers[static_cast<std::size_t>(exponent)];
}

std::int16_t RightShift(std::int16_t value, std::int16_t count) {
  return static_cast<std::int16_t>(value / PowerOfTwo(count));
}

std::int16_t LeftShift(std::int16_t value, std::int16_t count) {
  return CheckedMul16(value, PowerOfTwo(count));
}

}  // namespace marovia
