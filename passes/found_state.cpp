#include "passes/found_state.h"

#include <bit>
#include <numeric>

namespace marovia {

FoundState::FoundState(const VisitingOrder& order)
    : stretches_(order.Stretches()),
      before_(order.HomeCount()),
      now_(order.HomeCount()),
      wordsBefore_(before_.WordCount()),
      wordsNow_(before_.WordCount()),
      pendingInWord_(before_.WordCount(), 64),
      pendingInGroup_(before_.WordCount() / kGroup + 1, 64 * kGroup) {
  for (const Stretch& stretch : stretches_) pendingInStretch_.push_back(stretch.Size());
}

std::int64_t FoundState::Pending() const {
  return std::accumulate(pendingInStretch_.begin(), pendingInStretch_.end(), std::int64_t{0});
}

void FoundState::Settle() {
  std::size_t stretch = 0;
  ForMembers(wordsNow_, 0, now_.WordCount(), [&](std::size_t i) {
    const std::uint64_t found = now_.Word(i);
    before_.Word(i) |= found;
    now_.Word(i) = 0;
    wordsBefore_.Insert(static_cast<Home>(i));
    pendingInWord_[i] = static_cast<std::uint8_t>(pendingInWord_[i] - CountBits(found));
    pendingInGroup_[i / kGroup] -= CountBits(found);
    // A word may reach over the end of a stretch.
    while (stretches_[stretch].last <= i * 64) ++stretch;
    for (std::size_t s = stretch; s < stretches_.size() && stretches_[s].first < i * 64 + 64; ++s) {
      const std::uint64_t mask = HomeSet::RangeMask(i, stretches_[s].first, stretches_[s].last);
      pendingInStretch_[s] -= CountBits(found & mask);
    }
  });
  wordsNow_.Clear();
}

void FoundState::ListPending(const StretchOrder& order, HomeList& list) const {
  list.Clear(4 * (order.blocksOfFound.size() + order.blocksWithFound.size()));
  for (const std::span<const Home> blocks : {order.blocksOfFound, order.blocksWithFound}) {
    for (const Home block : blocks) list.AppendBlock(4 * block, ~before_.Block(block) & 0xF);
  }
}

void FoundState::ListGroup(std::size_t group, const Stretch& stretch, HomeList& list) const {
  list.Clear(64 * kGroup);
  for (std::uint64_t words = wordsBefore_.Word(group); words != 0; words &= words - 1) {
    const std::size_t i = group * kGroup + static_cast<std::size_t>(std::countr_zero(words));
    const auto base = static_cast<Home>(i * 64);
    std::uint64_t bits = before_.Word(i) & HomeSet::RangeMask(i, stretch.first, stretch.last);
    if (bits == ~std::uint64_t{0}) {
      list.AppendRange(base, 64);
      continue;
    }
    for (; bits != 0; bits &= bits - 1) {
      list.Append(base + static_cast<Home>(std::countr_zero(bits)));
    }
  }
}

void FoundState::ListBlocks(std::span<const Home> blocks, HomeList& list) const {
  list.Clear(4 * blocks.size());
  for (const Home block : blocks) list.AppendBlock(4 * block, before_.Block(block));
}

}  // namespace marovia
