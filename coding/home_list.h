// Lists of homes, filled block by block without a branch.
#pragma once

#include <array>
#include <cstdint>

#include "base/buffer.h"
#include "coding/home_set.h"

namespace marovia {

// For each set of the four homes of a block: how many they are, and their places, the lowest first.
inline constexpr std::array<std::uint8_t, 16> kBlockCounts = {0, 1, 1, 2, 1, 2, 2, 3,
                                                              1, 2, 2, 3, 2, 3, 3, 4};
inline constexpr std::array<std::array<Home, 4>, 16> kBlockPlaces = [] {
  std::array<std::array<Home, 4>, 16> places{};
  for (unsigned set = 0; set < 16; ++set) {
    unsigned count = 0;
    for (Home place = 0; place < 4; ++place) {
      if ((set >> place & 1) != 0) places[set][count++] = place;
    }
  }
  return places;
}();

class HomeList {
 public:
  // Empties the list, with room for at least `most` homes.
  void Clear(std::size_t most) {
    if (homes_.Size() < most + kSlack) homes_ = Buffer<Home>(most + kSlack);
    count_ = 0;
  }
  void Append(Home home) { homes_[count_++] = home; }
  void AppendRange(Home base, Home count) {
    Home* to = homes_.Data() + count_;
    for (Home i = 0; i < count; ++i) to[i] = base + i;
    count_ += count;
  }
  // Those of the homes base to base + 3 that the four bits of `set` mark. Always writes four, so
  // the room holds that many more than the homes.
  void AppendBlock(Home base, std::uint64_t set) {
    Home* to = homes_.Data() + count_;
    for (std::size_t i = 0; i < kSlack; ++i) to[i] = base + kBlockPlaces[set][i];
    count_ += kBlockCounts[set];
  }

  [[nodiscard]] std::span<const Home> Homes() const { return homes_.Values().first(count_); }

 private:
  static constexpr std::size_t kSlack = 4;

  Buffer<Home> homes_;
  std::size_t count_ = 0;
};

}  // namespace marovia
