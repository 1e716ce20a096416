#pragma once

#include <span>

namespace marovia {

// The largest magnitude of the values, 0 for none.
float LargestMagnitude(std::span<const float> values);

}  // namespace marovia
