#include "coding/home_set.h"

namespace marovia {

bool HomeSet::AnyIn(Home first, Home last) const {
  for (std::size_t i = first / 64; i * 64 < last; ++i) {
    if (words_[i] != 0 && (words_[i] & RangeMask(i, first, last)) != 0) return true;
  }
  return false;
}

void HomeSet::IntersectWith(const HomeSet& other) {
  for (std::size_t i = 0; i < words_.size(); ++i) words_[i] &= other.words_[i];
}

}  // namespace marovia
