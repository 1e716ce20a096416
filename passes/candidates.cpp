#include "passes/candidates.h"

#include <algorithm>
#include <bit>
#include <utility>

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

// Takes the first ones, at most `most`, off a list.
std::span<const Home> TakeFirst(std::span<const Home>& list, std::size_t most) {
  const auto first = list.first(std::min(most, list.size()));
  list = list.subspan(first.size());
  return first;
}

}  // namespace

CandidateWalk::CandidateWalk(const HomeSet& candidates, const BitPlanes& planes,
                             const FoundState& found, VisitingOrder& order)
    : candidates_(candidates), planes_(planes), found_(found), order_(order) {
  BeginStretch();
}

std::span<Candidate> CandidateWalk::Next() {
  count_ = 0;
  while (stretch_ < order_.Stretches().size() && count_ + kMostOfAPiece <= kMost) AppendPiece();
  const auto list = std::span(list_).first(count_);
  for (Candidate& candidate : list) candidate.negative = planes_.Negative(candidate.home);
  return list;
}

void CandidateWalk::BeginStretch() {
  rest_ = {};
  for (const auto stretches = order_.Stretches(); stretch_ < stretches.size(); ++stretch_) {
    const Stretch& stretch = stretches[stretch_];
    word_ = stretch.first / 64;
    if (candidates_.AnyIn(stretch.first, stretch.last)) {
      if (stretch.ordered) rest_ = order_.OrderOf(stretch_);
      return;
    }
    passed_ += static_cast<std::uint32_t>(found_.PendingInStretch(stretch_));
  }
}

void CandidateWalk::AppendPiece() {
  const Stretch& stretch = order_.Stretches()[stretch_];
  if (!stretch.ordered && word_ * 64 < stretch.last) {
    AppendInTurn(stretch);
  } else if (!rest_.homes.empty()) {
    AppendHomes(TakeFirst(rest_.homes, kMostOfAPiece));
  } else if (!rest_.blocksOfFound.empty()) {
    AppendBlocks(TakeFirst(rest_.blocksOfFound, kPieceBlocks));
  } else if (!rest_.blocksWithFound.empty()) {
    AppendBlocks(TakeFirst(rest_.blocksWithFound, kPieceBlocks));
  } else if (!rest_.blocksWithout.empty()) {
    AppendPendingBlocks(TakeFirst(rest_.blocksWithout, kPieceBlocks));
  } else {
    ++stretch_;
    BeginStretch();
  }
}

void CandidateWalk::AppendInTurn(const Stretch& stretch) {
  const std::size_t end = std::min(word_ + kPieceWords, (std::size_t{stretch.last} + 63) / 64);
  for (; word_ < end; ++word_) {
    const std::uint64_t mask = HomeSet::RangeMask(word_, stretch.first, stretch.last);
    const std::uint64_t candidates = candidates_.Word(word_) & mask;
    if (candidates == 0 && mask == ~std::uint64_t{0}) {
      passed_ += static_cast<std::uint32_t>(found_.PendingInWord(word_));
    } else {
      AppendAmong(static_cast<Home>(word_ * 64), ~found_.Before().Word(word_) & mask, candidates);
    }
  }
}

void CandidateWalk::AppendHomes(std::span<const Home> homes) {
  for (const Home home : homes) {
    ++passed_;
    if (candidates_.Has(home)) Append(home, passed_);
  }
}

void CandidateWalk::AppendBlocks(std::span<const Home> blocks) {
  Candidate* to = list_.data() + count_;
  std::uint32_t passed = passed_;
  for (const Home block : blocks) {
    const std::uint64_t pending = ~found_.Before().Block(block) & 0xF;
    const std::uint64_t candidates = candidates_.Block(block);
    const BlockCandidates& entry = kBlockCandidates[pending << 4 | candidates];
    for (std::size_t i = 0; i < 4; ++i) {
      to[i] = {4 * block + entry.places[i], passed + entry.numbers[i], false};
    }
    to += kBlockCounts[candidates];
    passed += kBlockCounts[pending];
  }
  passed_ = passed;
  count_ = static_cast<std::size_t>(to - list_.data());
}

void CandidateWalk::AppendPendingBlocks(std::span<const Home> blocks) {
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    // Mostly the next four blocks are the children of one, and hold nothing.
    if (i + 4 <= blocks.size() && blocks[i] % 4 == 0 && blocks[i + 3] == blocks[i] + 3 &&
        candidates_.Children(blocks[i] / 4) == 0) {
      i += 3;
      passed_ += 16;
      continue;
    }
    AppendBlocks(blocks.subspan(i, 1));
  }
}

// The homes from `base` on that the bits of `pending` mark, the lowest first.
void CandidateWalk::AppendAmong(Home base, std::uint64_t pending, std::uint64_t candidates) {
  for (; candidates != 0; candidates &= candidates - 1) {
    const std::uint64_t upTo = candidates ^ (candidates - 1);
    Append(base + static_cast<Home>(std::countr_zero(candidates)),
           passed_ + static_cast<std::uint32_t>(CountBits(pending & upTo)));
  }
  passed_ += static_cast<std::uint32_t>(CountBits(pending));
}

}  // namespace marovia
