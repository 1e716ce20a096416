// Numbers: the one rounding of the format, and arithmetic that fails where a result leaves its
// type.
#pragma once

#include <cstdint>
#include <span>
#include <type_traits>

namespace marovia {

// The nearest whole number; of two equally near the even one (2.5 gives 2, 3.5 gives 4).
double RoundHalfEven(double value);

// Adding it to a value below a quarter of it and taking it off again is the same rounding, in the
// mode that every program starts in: 1.5 * 2^23 and 1.5 * 2^52.
template <class Real>
inline constexpr Real kRounder =
    std::is_same_v<Real, float> ? Real{12582912} : Real{6755399441055744};

// RoundHalfEven, then the conversion. Error kOverflow where the result does not fit or the value is
// not a number.
std::uint8_t ToByte(double value);
std::int16_t ToInt16(double value);
std::int32_t ToInt32(double value);

// Error kOverflow where the exact product does not fit.
std::int32_t CheckedMul32(std::int32_t a, std::int32_t b);

// The largest magnitude of the values, 0 for none.
float LargestMagnitude(std::span<const float> values);

}  // namespace marovia
