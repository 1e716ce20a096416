// What a run of passes goes by besides its coefficients.
#pragma once

#include <cstdint>
#include <limits>

#include "coding/home_set.h"

namespace marovia {

constexpr std::int64_t kNoLimit = std::numeric_limits<std::int64_t>::max();

struct EncoderPlan {
  std::int64_t budget = kNoLimit;  // the run ends at the first test at which this much is spent
  // Whether a budget that the header's charge alone uses up keeps even the first symbol back.
  bool testBeforeFirstSymbol = true;
  // From this many bits on, only what lies in the region is found.
  std::int64_t switchPoint = kNoLimit;
  const HomeSet* region = nullptr;
};

}  // namespace marovia
