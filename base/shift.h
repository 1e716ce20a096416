// Powers of two by table, and the shifts of 16-bit sizes and positions.
#pragma once

#include <cstdint>

namespace marovia {

// 2 to the power `exponent`, 0 to 14; Error kIndex outside.
std::int16_t PowerOfTwo(int exponent);

// value / 2^count, rounded toward zero (-5 by 1 gives -2, where an arithmetic shift gives -3).
// Error kIndex where count is not in 0 to 14.
std::int16_t RightShift(std::int16_t value, std::int16_t count);

// value * 2^count. Error kIndex as RightShift, kOverflow where the product leaves 16 bits.
std::int16_t LeftShift(std::int16_t value, std::int16_t count);

}  // namespace marovia
