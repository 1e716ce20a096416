// Adaptive estimates of how probable a 1 is, and the contexts that choose among them.
#pragma once

#include <array>
#include <cstdint>

#include "base/bits.h"

namespace marovia {

// A quick and a slow estimate in 1/65536, and how many decisions they rest on. Their mean is the
// probability used, held to 32..65504.
struct Counter {
  std::uint16_t quick = 32768;
  std::uint16_t slow = 32768;
  std::uint16_t seen = 0;
  std::uint16_t probability = 32768;
};

// How far the counts of both estimates go: the weight of a decision is 2 / (2 count + 3).
struct Pace {
  std::uint32_t mostQuick;
  std::uint32_t mostSeen;
};
inline constexpr Pace kPace{30, 510};
inline constexpr Pace kTilePace{14, 62};

namespace counter_detail {

inline constexpr auto kWeights = [] {
  std::array<std::uint16_t, kPace.mostSeen + 1> weights{};
  for (std::uint32_t j = 0; j < weights.size(); ++j) {
    weights[j] = static_cast<std::uint16_t>(131072 / (2 * j + 3));
  }
  return weights;
}();
static_assert(kWeights[kPace.mostQuick] == 65 << 5 && kWeights[kPace.mostSeen] == 1 << 7,
              "the weights of a full counter are those that Learn has as shifts");

MAROVIA_INLINE std::uint16_t Held(std::uint32_t probability) {
  constexpr std::uint32_t kLeast = 32;
  constexpr std::uint32_t kMost = 65504;
  if (probability < kLeast) [[unlikely]]
    return kLeast;
  if (probability > kMost) [[unlikely]]
    return kMost;
  return static_cast<std::uint16_t>(probability);
}

}  // namespace counter_detail

// `ones` has all 16 bits set for a 1 and none for a 0. A 1 moves the complements of the estimates
// as a 0 moves the estimates.
template <Pace kLimits = kPace>
MAROVIA_INLINE void Learn(Counter& counter, std::uint32_t ones) {
  using counter_detail::kWeights;
  std::uint32_t quick = counter.quick ^ ones;
  std::uint32_t slow = counter.slow ^ ones;
  if (kLimits.mostSeen == kPace.mostSeen && counter.seen == kPace.mostSeen) {
    quick -= quick * 65 >> 11;
    slow -= slow >> 9;
  } else {
    const std::uint32_t seen =
        counter.seen < kLimits.mostSeen ? counter.seen + 1U : kLimits.mostSeen;
    quick -= quick * kWeights[seen < kLimits.mostQuick ? seen : kLimits.mostQuick] >> 16;
    slow -= slow * kWeights[seen] >> 16;
    counter.seen = static_cast<std::uint16_t>(seen);
  }
  quick ^= ones;
  slow ^= ones;
  counter.quick = static_cast<std::uint16_t>(quick);
  counter.slow = static_cast<std::uint16_t>(slow);
  counter.probability = counter_detail::Held((quick + slow) >> 1);
}

inline constexpr int kScoreClasses = 18;
inline constexpr int kMostScore = 127;  // above every score that neighbours can add up to

// The class of each score: how many bounds are at most that.
inline constexpr auto kClassOfScore = [] {
  std::array<std::uint8_t, kMostScore + 1> classes{};
  for (const int bound : {1, 2, 3, 4, 5, 6, 8, 10, 12, 15, 18, 22, 26, 31, 36, 42, 48}) {
    for (int score = bound; score <= kMostScore; ++score)
      ++classes[static_cast<std::size_t>(score)];
  }
  return classes;
}();

// What the known values around a refined one add up to is of one of eight classes.
inline constexpr std::array<std::uint8_t, 7> kKnownBounds = {8, 11, 16, 22, 31, 43, 60};
inline constexpr int kMostKnown = 8;
inline constexpr int kFirstRefinement = 2;  // the known value of what was found a plane before
inline constexpr int kEvenPlace = 16;       // the place among the refinement counters of a decision
                                            // that needs none

using FindCounters = std::array<Counter, kScoreClasses>;

struct Counters {
  Counters();

  // Of a band of this kind and level.
  static std::size_t FindPlace(bool diagonal, int level);

  std::array<FindCounters, 6> find;            // [FindPlace][class of score]
  std::array<std::array<Counter, 5>, 4> sign;  // [kind of band][SignPlace]
  std::array<Counter, 17> refine;              // [first refinement or not][class], kEvenPlace
  std::array<Counter, 2> tile;                 // [some member has a score]
};

// The context of a sign, and whether the opposite of it is coded there: by the sums of the signs to
// the left and right, and above and below, each held to -1..1. What is mirrored is alike.
struct SignPlace {
  std::uint8_t place;
  std::uint8_t opposite;
};
inline constexpr auto kSignPlaces = [] {
  std::array<std::array<SignPlace, 5>, 5> places{};
  for (std::size_t across = 0; across < 5; ++across) {
    for (std::size_t down = 0; down < 5; ++down) {
      int h = across < 2 ? -1 : across > 2 ? 1 : 0;
      int v = down < 2 ? -1 : down > 2 ? 1 : 0;
      const bool opposite = h < 0 || (h == 0 && v < 0);
      if (opposite) h = -h, v = -v;
      places[across][down] = {static_cast<std::uint8_t>(h == 0 ? v : 3 + v),
                              static_cast<std::uint8_t>(opposite)};
    }
  }
  return places;
}();

}  // namespace marovia
