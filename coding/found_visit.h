// The homes found before a pass, in its order of visiting.
#pragma once

#include <bit>

#include "coding/visiting_order.h"

namespace marovia {

namespace detail {

template <class Visit>
bool VisitBits(Home base, std::uint64_t bits, Visit& visit) {
  for (; bits != 0; bits &= bits - 1) {
    if (!visit(base + static_cast<Home>(std::countr_zero(bits)))) return false;
  }
  return true;
}

template <class Visit>
bool VisitBlocks(std::span<const Home> blocks, const HomeSet& found, Visit& visit) {
  for (const Home block : blocks) {
    if (!VisitBits(4 * block, found.Block(block), visit)) return false;
  }
  return true;
}

template <class Visit>
bool VisitInTurn(const Stretch& stretch, const HomeSet& found, Visit& visit) {
  for (std::size_t i = stretch.first / 64; i * 64 < stretch.last; ++i) {
    const std::uint64_t mask = HomeSet::RangeMask(i, stretch.first, stretch.last);
    if (!VisitBits(static_cast<Home>(i * 64), found.Word(i) & mask, visit)) return false;
  }
  return true;
}

}  // namespace detail

// Calls visit(home) until it returns false; whether it never did.
template <class Visit>
bool ForEachFound(VisitingOrder& order, const HomeSet& found, Visit visit) {
  for (std::size_t i = 0; i < order.Stretches().size(); ++i) {
    const Stretch& stretch = order.Stretches()[i];
    if (!stretch.ordered) {
      if (!detail::VisitInTurn(stretch, found, visit)) return false;
      continue;
    }
    if (found.CountIn(stretch.first, stretch.last) == 0) continue;
    const StretchOrder blocks = order.OrderOf(i);
    if (!detail::VisitBlocks(blocks.blocksOfFound, found, visit) ||
        !detail::VisitBlocks(blocks.blocksWithFound, found, visit)) {
      return false;
    }
  }
  return true;
}

}  // namespace marovia
