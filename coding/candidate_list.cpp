#include "coding/candidate_list.h"

#include <bit>

namespace marovia {

void CandidateList::Fill(const HomeSet& candidates, const FoundState& found, VisitingOrder& order) {
  candidates_ = &candidates;
  found_ = &found;
  passed_ = 0;
  list_.clear();
  const auto stretches = order.Stretches();
  for (std::size_t i = 0; i < stretches.size(); ++i) {
    if (!stretches[i].ordered) {
      AppendInTurn(stretches[i]);
    } else if (candidates.AnyIn(stretches[i].first, stretches[i].last)) {
      AppendInOrder(order.OrderOf(i));
    } else {
      passed_ += static_cast<std::uint32_t>(found.PendingInStretch(i));
    }
  }
}

void CandidateList::AppendInTurn(const Stretch& stretch) {
  for (std::size_t i = stretch.first / 64; i * 64 < stretch.last; ++i) {
    const std::uint64_t mask = HomeSet::RangeMask(i, stretch.first, stretch.last);
    const std::uint64_t candidates = candidates_->Word(i) & mask;
    if (candidates == 0 && mask == ~std::uint64_t{0}) {
      passed_ += static_cast<std::uint32_t>(found_->PendingInWord(i));
    } else {
      AppendAmong(static_cast<Home>(i * 64), ~found_->Before().Word(i) & mask, candidates);
    }
  }
}

void CandidateList::AppendInOrder(const StretchOrder& order) {
  for (const Home home : order.homes) {
    ++passed_;
    if (candidates_->Has(home)) list_.push_back({home, passed_});
  }
  AppendBlocks(order.blocksOfFound);
  AppendBlocks(order.blocksWithFound);
  AppendPendingBlocks(order.blocksWithout);
}

void CandidateList::AppendBlocks(std::span<const Home> blocks) {
  for (const Home block : blocks) {
    const std::uint64_t pending = ~found_->Before().Block(block) & 0xF;
    std::uint64_t bits = candidates_->Block(block);
    for (; bits != 0; bits &= bits - 1) {
      const auto place = static_cast<Home>(std::countr_zero(bits));
      list_.push_back({4 * block + place, passed_ + kBlockCounts[pending & (0xFU >> (3 - place))]});
    }
    passed_ += kBlockCounts[pending];
  }
}

void CandidateList::AppendPendingBlocks(std::span<const Home> blocks) {
  for (const Home block : blocks) {
    for (std::uint64_t bits = candidates_->Block(block); bits != 0; bits &= bits - 1) {
      const auto place = static_cast<Home>(std::countr_zero(bits));
      list_.push_back({4 * block + place, passed_ + place + 1});
    }
    passed_ += 4;
  }
}

// The homes from `base` on that the bits of `pending` mark, the lowest first.
void CandidateList::AppendAmong(Home base, std::uint64_t pending, std::uint64_t candidates) {
  for (; candidates != 0; candidates &= candidates - 1) {
    const std::uint64_t upTo = candidates ^ (candidates - 1);
    list_.push_back({base + static_cast<Home>(std::countr_zero(candidates)),
                     passed_ + static_cast<std::uint32_t>(CountBits(pending & upTo))});
  }
  passed_ += static_cast<std::uint32_t>(CountBits(pending));
}

}  // namespace marovia
