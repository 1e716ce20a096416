#include "passes/candidate_list.h"

#include <array>
#include <bit>

namespace marovia {
namespace {

// The candidates of a block, the lowest first: their places in it, and their numbers among its
// pending homes, from 1.
struct BlockCandidates {
  std::array<std::uint8_t, 4> places;
  std::array<std::uint8_t, 4> numbers;
};

// By the set of the pending homes, shifted by 4, and that of the candidates.
constexpr std::array<BlockCandidates, 256> MakeBlockCandidates() {
  std::array<BlockCandidates, 256> blocks{};
  for (unsigned key = 0; key < 256; ++key) {
    unsigned count = 0;
    for (unsigned place = 0; place < 4; ++place) {
      if ((key >> place & 1) == 0) continue;
      const unsigned upTo = key >> 4 & (0xFU >> (3 - place));
      blocks[key].places[count] = static_cast<std::uint8_t>(place);
      blocks[key].numbers[count++] = kBlockCounts[upTo];
    }
  }
  return blocks;
}

constexpr std::array<BlockCandidates, 256> kBlockCandidates = MakeBlockCandidates();

}  // namespace

void CandidateList::Fill(const HomeSet& candidates, const FoundState& found, VisitingOrder& order) {
  candidates_ = &candidates;
  found_ = &found;
  passed_ = 0;
  MakeRoom();
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

// A block always writes four.
void CandidateList::MakeRoom() {
  std::size_t most = 4;
  for (std::size_t i = 0; i < candidates_->WordCount(); ++i) {
    most += static_cast<std::size_t>(CountBits(candidates_->Word(i)));
  }
  if (list_.size() < most) list_ = Buffer<Candidate>(most);
  count_ = 0;
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
    if (candidates_->Has(home)) Append(home, passed_);
  }
  AppendBlocks(order.blocksOfFound);
  AppendBlocks(order.blocksWithFound);
  AppendPendingBlocks(order.blocksWithout);
}

void CandidateList::AppendBlocks(std::span<const Home> blocks) {
  Candidate* to = list_.data() + count_;
  std::uint32_t passed = passed_;
  for (const Home block : blocks) {
    const std::uint64_t pending = ~found_->Before().Block(block) & 0xF;
    const std::uint64_t candidates = candidates_->Block(block);
    const BlockCandidates& entry = kBlockCandidates[pending << 4 | candidates];
    for (std::size_t i = 0; i < 4; ++i) {
      to[i] = {4 * block + entry.places[i], passed + entry.numbers[i]};
    }
    to += kBlockCounts[candidates];
    passed += kBlockCounts[pending];
  }
  passed_ = passed;
  count_ = static_cast<std::size_t>(to - list_.data());
}

void CandidateList::AppendPendingBlocks(std::span<const Home> blocks) {
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    // Mostly the next four blocks are the children of one, and hold nothing.
    if (i + 4 <= blocks.size() && blocks[i] % 4 == 0 && blocks[i + 3] == blocks[i] + 3 &&
        candidates_->Children(blocks[i] / 4) == 0) {
      i += 3;
      passed_ += 16;
      continue;
    }
    AppendBlocks(blocks.subspan(i, 1));
  }
}

// The homes from `base` on that the bits of `pending` mark, the lowest first.
void CandidateList::AppendAmong(Home base, std::uint64_t pending, std::uint64_t candidates) {
  for (; candidates != 0; candidates &= candidates - 1) {
    const std::uint64_t upTo = candidates ^ (candidates - 1);
    Append(base + static_cast<Home>(std::countr_zero(candidates)),
           passed_ + static_cast<std::uint32_t>(CountBits(pending & upTo)));
  }
  passed_ += static_cast<std::uint32_t>(CountBits(pending));
}

}  // namespace marovia
