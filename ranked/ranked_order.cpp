#include "ranked/ranked_order.h"

namespace marovia {

RankedOrder::RankedOrder(const RestingOrder& resting)
    : resting_(resting),
      states_(resting.HomeCount()),
      pending_(resting.HomeCount()),
      raised_(resting.HomeCount()),
      queues_(resting.HomeCount()),
      pendingCount_(static_cast<std::int64_t>(resting.HomeCount())) {
  for (std::size_t i = 0; i < pending_.WordCount(); ++i) {
    pending_.Word(i) = HomeSet::RangeMask(i, 0, static_cast<Home>(resting.HomeCount()));
  }
}

void RankedOrder::FillQueues() {
  queues_.Clear();
  unraisedFrom_ = 0;
  for (std::size_t i = 0; i < pending_.WordCount(); ++i) {
    std::uint64_t waiting = pending_.Word(i) & raised_.Word(i);
    for (; waiting != 0; waiting &= waiting - 1) {
      const Home home = static_cast<Home>(i * 64) + static_cast<Home>(std::countr_zero(waiting));
      const unsigned score = states_[home] & kScore;
      states_[home] = static_cast<std::uint8_t>(score);
      queues_.Filled(queues_.Join(score, home));
    }
  }
}

}  // namespace marovia
