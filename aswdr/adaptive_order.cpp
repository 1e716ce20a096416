#include "aswdr/adaptive_order.h"

#include <algorithm>
#include <utility>

namespace marovia {
namespace {

struct Place {
  int r;
  int c;
};

// The block of children at (2i, 2j) is walked as a connected path (across it in the diagonal band):
// the offsets of its four places in that order, for a parent in the band at hand.
using BlockWalk = Place[4];
constexpr BlockWalk kLowerWalk = {{0, 0}, {0, 1}, {1, 1}, {1, 0}};
constexpr BlockWalk kRightWalk = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
constexpr BlockWalk kDiagonalWalk = {{0, 0}, {1, 0}, {0, 1}, {1, 1}};

const BlockWalk& WalkOf(Place parent, int cornerRows, int cornerCols) {
  if (parent.r < cornerRows) return kRightWalk;
  return parent.c < cornerCols ? kLowerWalk : kDiagonalWalk;
}

// Appends the children of the homes of `level`, the last ones in the walk.
void AppendChildren(Walk& walk, const BandGrid& grid, int level) {
  const int cornerRows = grid.CornerRows(level);
  const int cornerCols = grid.CornerCols(level);
  const std::size_t last = walk.size();
  const auto corner = static_cast<std::size_t>(cornerRows) * static_cast<std::size_t>(cornerCols);
  for (std::size_t home = corner; home < last; ++home) {
    const Place parent{static_cast<int>(walk[home]) / grid.cols,
                       static_cast<int>(walk[home]) % grid.cols};
    for (const Place& offset : WalkOf(parent, cornerRows, cornerCols)) {
      walk.push_back(grid.Position(2 * parent.r + offset.r, 2 * parent.c + offset.c));
    }
  }
}

std::size_t CornerSize(const BandGrid& grid, int level) {
  return static_cast<std::size_t>(grid.CornerRows(level)) *
         static_cast<std::size_t>(grid.CornerCols(level));
}

Walk NumberHomes(const BandGrid& grid) {
  if (grid.levels < 2) return CreateScanOrder(grid);
  Walk walk;
  walk.reserve(grid.Size());
  AppendZigZag(walk, grid, 0, 0, grid.CornerRows(1), grid.CornerCols(1));
  AppendLevel(walk, grid, 1, LevelOrderKind::kRightFirst);
  for (int level = 1; level < grid.levels; ++level) AppendChildren(walk, grid, level);
  AppendLeftOver(walk, grid);
  return walk;
}

std::vector<Stretch> MakeStretches(const BandGrid& grid) {
  const auto size = static_cast<Home>(grid.Size());
  if (grid.levels < 2) return {{0, size, false}};
  auto end = static_cast<Home>(CornerSize(grid, 2));
  std::vector<Stretch> stretches{{0, end, false}};
  for (int level = 2; level <= grid.levels; ++level) {
    stretches.push_back({end, 4 * end, true});
    end *= 4;
  }
  if (end < size) stretches.push_back({end, size, false});
  return stretches;
}

}  // namespace

AdaptiveOrder::AdaptiveOrder(const BandGrid& grid)
    : VisitingOrder(NumberHomes(grid), MakeStretches(grid)), grid_(grid) {
  for (const Stretch& stretch : Stretches()) {
    if (!stretch.ordered) continue;
    Level& level = levels_.emplace_back();
    level.number = static_cast<int>(levels_.size()) + 1;
    level.firstBlock = stretch.first / 4;
    level.lastBlock = stretch.last / 4;
  }
}

void AdaptiveOrder::Rebuild(const HomeSet& found) {
  found_ = &found;
  for (Level& level : levels_) level.made = false;
}

// The first stretch is the one that keeps its order.
StretchOrder AdaptiveOrder::OrderOf(std::size_t stretch) {
  Level& level = levels_[stretch - 1];
  if (!level.made) {
    if (found_ == nullptr) {
      MakeFirst(level);
    } else {
      Make(stretch - 1);
    }
  }
  return {level.homes, level.blocksOfFound, level.blocksWithFound, level.blocksWithout};
}

// Before the second pass a level is visited in the walk of its bands.
void AdaptiveOrder::MakeFirst(Level& level) {
  Walk walk;
  AppendLevel(walk, grid_, level.number, LevelOrderKind::kRightFirst);
  std::vector<Home> homeAt(grid_.Size());
  for (Home home = 4 * level.firstBlock; home < 4 * level.lastBlock; ++home) {
    homeAt[Positions()[home]] = home;
  }
  level.homes.clear();
  for (const std::uint32_t position : walk) level.homes.push_back(homeAt[position]);
  level.made = true;
}

void AdaptiveOrder::Make(std::size_t index) {
  Level& level = levels_[index];
  level.homes.clear();
  level.blocksOfFound.clear();
  level.blocksWithFound.clear();
  level.blocksWithout.clear();
  if (index == 0) {
    for (Home home = level.firstBlock; home < level.lastBlock; ++home) AppendParent(level, home);
  } else {
    if (!levels_[index - 1].made) Make(index - 1);
    const Level& parents = levels_[index - 1];
    for (const auto* blocks :
         {&parents.blocksOfFound, &parents.blocksWithFound, &parents.blocksWithout}) {
      for (const Home block : *blocks) AppendParents(level, block);
    }
  }
  level.made = true;
}

void AdaptiveOrder::AppendParent(Level& level, Home parent) {
  if (found_->Has(parent)) {
    level.blocksOfFound.push_back(parent);
  } else if (found_->Block(parent) != 0) {
    level.blocksWithFound.push_back(parent);
  } else {
    level.blocksWithout.push_back(parent);
  }
}

// The four parents of a block, in most blocks none of them found and without a found child.
void AdaptiveOrder::AppendParents(Level& level, Home block) {
  const Home first = 4 * block;
  if ((found_->Block(block) | found_->Children(block)) == 0) {
    const Home parents[] = {first, first + 1, first + 2, first + 3};
    level.blocksWithout.insert(level.blocksWithout.end(), std::begin(parents), std::end(parents));
    return;
  }
  for (Home parent = first; parent < first + 4; ++parent) AppendParent(level, parent);
}

}  // namespace marovia
