#include "coding/home_set.h"

namespace marovia {

bool HomeSet::AnyIn(Home first, Home last) const {
  for (std::size_t i = first / 64; i * 64 < last; ++i) {
    if (words_[i] != 0 && (words_[i] & RangeMask(i, first, last)) != 0) return true;
  }
  return false;
}

}  // namespace marovia
