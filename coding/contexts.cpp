#include "coding/contexts.h"

namespace marovia {
namespace {

struct Counts {
  unsigned first;
  unsigned second;
  unsigned firstCharacter;
};

// States are numbered by their total, then by the second count, then by the first character; each
// total t has 2 * (t / 2) of them.
constexpr std::size_t NumberOf(const Counts& counts) {
  const std::size_t total = counts.first + counts.second;
  // The sum of 2 * (t / 2) over t from 2 to total - 1.
  const std::size_t before = (total - 1) / 2 * (total / 2) * 2;
  return before + std::size_t{2} * (counts.second - 1) + counts.firstCharacter;
}

constexpr Counts Halved(Counts counts) {
  if (counts.first + counts.second < SecondSetup::kMostTotal) return counts;
  return {(counts.first + 1) / 2, (counts.second + 1) / 2, counts.firstCharacter};
}

constexpr Counts AfterFirst(const Counts& counts) {
  return {counts.first + 1, counts.second, counts.firstCharacter};
}

constexpr Counts AfterSecond(const Counts& counts) {
  if (counts.first == counts.second) {
    return {counts.second + 1, counts.first, counts.firstCharacter ^ 1};
  }
  return {counts.first, counts.second + 1, counts.firstCharacter};
}

constexpr std::array<BinaryState, kBinaryStateCount> MakeStates() {
  std::array<BinaryState, kBinaryStateCount> states{};
  for (unsigned total = 2; total <= SecondSetup::kMostTotal; ++total) {
    for (unsigned second = 1; second <= total / 2; ++second) {
      for (unsigned character = 0; character < 2; ++character) {
        const Counts counts{total - second, second, character};
        const Counts halved = Halved(counts);
        states[NumberOf(counts)] = {arithmetic::Fraction(second, total),
                                    static_cast<std::uint16_t>(NumberOf(AfterFirst(halved))),
                                    static_cast<std::uint16_t>(NumberOf(AfterSecond(halved)))};
      }
    }
  }
  return states;
}

#ifdef __wasm__
// Not constexpr, so that the table is made as the module starts: it would be a third of what is to
// be downloaded.
std::array<BinaryState, kBinaryStateCount> States() {
  return MakeStates();
}
#else
consteval std::array<BinaryState, kBinaryStateCount> States() {
  return MakeStates();
}
#endif

}  // namespace

const std::array<BinaryState, kBinaryStateCount> kBinaryStates = States();

}  // namespace marovia
