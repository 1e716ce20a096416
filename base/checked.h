// Arithmetic that fails where a result leaves its type, and the one rounding of the format.
#pragma once

#include <cstdint>

namespace marovia {

// The nearest whole number; of two equally near the even one (2.5 gives 2, 3.5 gives 4).
double RoundHalfEven(double value);

// RoundHalfEven, then the conversion. Error kOverflow where the result does not fit or the value is
// not a number.
std::uint8_t ToByte(double value);
std::int16_t ToInt16(double value);
std::int32_t ToInt32(double value);

// Error kOverflow where the exact result does not fit.
std::int16_t CheckedMul16(std::int16_t a, std::int16_t b);
std::int32_t CheckedAdd32(std::int32_t a, std::int32_t b);
std::int32_t CheckedMul32(std::int32_t a, std::int32_t b);

}  // namespace marovia
