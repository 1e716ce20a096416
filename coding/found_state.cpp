#include "coding/found_state.h"

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

void FoundState::ListBefore(VisitingOrder& order, HomeList& list) const {
  list.Clear(static_cast<std::size_t>(count_));
  for (std::size_t i = 0; i < stretches_.size(); ++i) {
    if (pendingInStretch_[i] == stretches_[i].Size()) continue;
    if (!stretches_[i].ordered) {
      AppendInTurn(stretches_[i], list);
      continue;
    }
    const StretchOrder blocks = order.OrderOf(i);
    AppendBlocks(blocks.blocksOfFound, list);
    AppendBlocks(blocks.blocksWithFound, list);
  }
}

void FoundState::ListPending(const StretchOrder& order, HomeList& list) const {
  list.Clear(4 * (order.blocksOfFound.size() + order.blocksWithFound.size()));
  for (const std::span<const Home> blocks : {order.blocksOfFound, order.blocksWithFound}) {
    for (const Home block : blocks) list.AppendBlock(4 * block, ~before_.Block(block) & 0xF);
  }
}

void FoundState::AppendInTurn(const Stretch& stretch, HomeList& list) const {
  ForMembers(wordsBefore_, stretch.first / 64, (std::size_t{stretch.last} + 63) / 64,
             [&](std::size_t i) {
               std::uint64_t bits = before_.Word(i);
               bits &= HomeSet::RangeMask(i, stretch.first, stretch.last);
               for (; bits != 0; bits &= bits - 1) {
                 const auto place = static_cast<Home>(std::countr_zero(bits));
                 list.Append(static_cast<Home>(i * 64) + place);
               }
             });
}

void FoundState::AppendBlocks(std::span<const Home> blocks, HomeList& list) const {
  for (const Home block : blocks) list.AppendBlock(4 * block, before_.Block(block));
}

}  // namespace marovia
