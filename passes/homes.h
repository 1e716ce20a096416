// Homes, the coefficients under the numbers that an order gives them: sets of them, and lists that
// are filled block by block without a branch.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

#include "marovia/grid.h"

namespace marovia {

// A home is the number of a coefficient, from 0, in the order in which a scan keeps them: the order
// of visiting where that is fixed, else one in which the four children of home p are the homes 4p
// to 4p + 3. Four such homes are a block, and have the number p.
using Home = std::uint32_t;

// One bit a home.
class HomeSet {
 public:
  explicit HomeSet(std::size_t homes) : words_(homes / 64 + 1, 0) {}

  [[nodiscard]] std::size_t WordCount() const { return words_.size(); }
  std::uint64_t& Word(std::size_t i) { return words_[i]; }
  [[nodiscard]] std::uint64_t Word(std::size_t i) const { return words_[i]; }

  [[nodiscard]] bool Has(Home home) const { return (words_[home / 64] >> (home % 64) & 1) != 0; }
  void Insert(Home home) { words_[home / 64] |= std::uint64_t{1} << (home % 64); }

  void Remove(Home home) { words_[home / 64] &= ~(std::uint64_t{1} << (home % 64)); }

  void Clear() { std::fill(words_.begin(), words_.end(), 0); }

  // The homes of one block, the lowest bit the first of them.
  [[nodiscard]] std::uint64_t Block(Home block) const {
    return words_[block / 16] >> (block % 16 * 4) & 0xF;
  }
  // The homes of the four blocks 4 * block to 4 * block + 3: the children of the homes of a block.
  [[nodiscard]] std::uint64_t Children(Home block) const {
    return words_[block / 4] >> (block % 4 * 16) & 0xFFFF;
  }

  // Whether any of the homes first to last - 1 is in the set.
  [[nodiscard]] bool AnyIn(Home first, Home last) const {
    for (std::size_t i = first / 64; i * 64 < last; ++i) {
      if (words_[i] != 0 && (words_[i] & RangeMask(i, first, last)) != 0) return true;
    }
    return false;
  }
  // Of the homes first to last - 1, those that lie in word i of the set.
  static std::uint64_t RangeMask(std::size_t i, Home first, Home last) {
    const std::uint64_t begin = std::uint64_t{i} * 64;
    std::uint64_t mask = ~std::uint64_t{0};
    if (first > begin) mask &= first - begin < 64 ? mask << (first - begin) : 0;
    if (last < begin + 64) mask &= last > begin ? ~(~std::uint64_t{0} << (last - begin)) : 0;
    return mask;
  }

 private:
  Buffer<std::uint64_t> words_;
};

// Calls visit(member) for the homes first to last - 1 that are in a set.
template <class Visit>
void ForMembers(const HomeSet& set, std::size_t first, std::size_t last, Visit visit) {
  for (std::size_t i = first / 64; i * 64 < last; ++i) {
    std::uint64_t bits = set.Word(i);
    if (bits == 0) continue;
    bits &= HomeSet::RangeMask(i, static_cast<Home>(first), static_cast<Home>(last));
    for (; bits != 0; bits &= bits - 1) {
      visit(i * 64 + static_cast<std::size_t>(std::countr_zero(bits)));
    }
  }
}

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
    if (homes_.size() < most + kSlack) homes_ = Buffer<Home>(most + kSlack);
    count_ = 0;
  }
  void Append(Home home) { homes_[count_++] = home; }
  void AppendRange(Home base, Home count) {
    Home* to = homes_.data() + count_;
    for (Home i = 0; i < count; ++i) to[i] = base + i;
    count_ += count;
  }
  // Those of the homes base to base + 3 that the four bits of `set` mark. Always writes four, so
  // the room holds that many more than the homes.
  void AppendBlock(Home base, std::uint64_t set) {
    Home* to = homes_.data() + count_;
    for (std::size_t i = 0; i < kSlack; ++i) to[i] = base + kBlockPlaces[set][i];
    count_ += kBlockCounts[set];
  }

  [[nodiscard]] std::span<const Home> Homes() const { return std::span(homes_).first(count_); }

 private:
  static constexpr std::size_t kSlack = 4;

  Buffer<Home> homes_;
  std::size_t count_ = 0;
};

}  // namespace marovia
