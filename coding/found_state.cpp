#include "coding/found_state.h"

namespace marovia {

FoundState::FoundState(const VisitingOrder& order)
    : stretches_(order.Stretches()),
      before_(order.HomeCount()),
      now_(order.HomeCount()),
      pendingInWord_(before_.WordCount(), 64) {
  for (const Stretch& stretch : stretches_) pendingInStretch_.push_back(stretch.Size());
}

void FoundState::Settle() {
  std::size_t stretch = 0;
  for (std::size_t i = 0; i < now_.WordCount(); ++i) {
    const std::uint64_t found = now_.Word(i);
    if (found == 0) continue;
    before_.Word(i) |= found;
    now_.Word(i) = 0;
    pendingInWord_[i] = static_cast<std::uint8_t>(pendingInWord_[i] - CountBits(found));
    // A word may reach over the end of a stretch.
    while (stretches_[stretch].last <= i * 64) ++stretch;
    for (std::size_t s = stretch; s < stretches_.size() && stretches_[s].first < i * 64 + 64; ++s) {
      const std::uint64_t mask = HomeSet::RangeMask(i, stretches_[s].first, stretches_[s].last);
      pendingInStretch_[s] -= CountBits(found & mask);
    }
  }
}

}  // namespace marovia
