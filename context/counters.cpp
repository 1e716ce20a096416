#include "context/counters.h"

#include <algorithm>

namespace marovia {
namespace {

// What photographs teach, in 1/256, and how much of what follows it is worth.
constexpr std::array<std::uint16_t, kScoreClasses> kFindStarts = {
    1, 2, 4, 10, 12, 13, 20, 33, 37, 52, 76, 92, 100, 106, 112, 115, 120, 125};
constexpr std::uint16_t kFindSeen = 6;

}  // namespace

Counters::Counters() {
  FindCounters starts;
  for (std::size_t i = 0; i < starts.size(); ++i) {
    const auto start = static_cast<std::uint16_t>(256 * kFindStarts[i]);
    starts[i] = {start, start, kFindSeen, start};
  }
  find.fill(starts);
}

std::size_t Counters::FindPlace(bool diagonal, int level) {
  return static_cast<std::size_t>(std::clamp(level, 1, 3) - 1 + (diagonal ? 3 : 0));
}

}  // namespace marovia
