// What the programs of the campaigns share: numbers from their arguments, and time.
#pragma once

#include <cstdint>
#include <ctime>
#include <stdexcept>
#include <string>
#include <string_view>

#include "tests/campaigns/count_and_first.h"

namespace marovia::test {

// A whole number above 0; std::invalid_argument for anything else.
inline int NumberOf(std::string_view text) {
  std::uint32_t number = 0;
  if (ParseNumber(text, number) && number > 0 && number <= INT32_MAX) {
    return static_cast<int>(number);
  }
  throw std::invalid_argument(std::string(text) + " is no number above 0");
}

// Of this process, so that a busy machine counts no more than an idle one.
inline double ProcessorMilliseconds() {
  return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

}  // namespace marovia::test
