#include "coding/home_set.h"

#include <algorithm>

namespace marovia {

std::uint64_t HomeSet::RangeMask(std::size_t i, Home first, Home last) {
  const std::uint64_t begin = std::uint64_t{i} * 64;
  std::uint64_t mask = ~std::uint64_t{0};
  if (first > begin) mask &= first - begin < 64 ? mask << (first - begin) : 0;
  if (last < begin + 64) mask &= last > begin ? ~(~std::uint64_t{0} << (last - begin)) : 0;
  return mask;
}

std::int64_t HomeSet::CountIn(Home first, Home last) const {
  std::int64_t count = 0;
  for (std::size_t i = first / 64; i * 64 < last; ++i) {
    count += std::popcount(words_[i] & RangeMask(i, first, last));
  }
  return count;
}

void HomeSet::UniteWith(const HomeSet& other) {
  for (std::size_t i = 0; i < words_.size(); ++i) words_[i] |= other.words_[i];
}

void HomeSet::IntersectWith(const HomeSet& other) {
  for (std::size_t i = 0; i < words_.size(); ++i) words_[i] &= other.words_[i];
}

void HomeSet::Clear() {
  std::fill(words_.begin(), words_.end(), 0);
}

}  // namespace marovia
