#pragma once

#include <array>

namespace marovia {

// Of a bit plane, in this order. A sweep's number is the least score that it visits.
enum class Pass { kSweep10, kSweep7, kSweep3, kRefine, kSweep1, kTiles };

inline constexpr std::array kPasses = {Pass::kSweep10, Pass::kSweep7, Pass::kSweep3,
                                       Pass::kRefine,  Pass::kSweep1, Pass::kTiles};

}  // namespace marovia
