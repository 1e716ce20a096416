#include "base/magnitude.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "base/bits.h"

namespace marovia {

MAROVIA_WIDE_VECTORS float LargestMagnitude(std::span<const float> values) {
  // Magnitudes are in the order of their bit patterns.
  std::int32_t largest = 0;
  for (const float value : values) {
    largest = std::max(largest, std::bit_cast<std::int32_t>(value) & INT32_MAX);
  }
  return std::bit_cast<float>(largest);
}

}  // namespace marovia
