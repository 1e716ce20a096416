#include "passes/adaptive_order.h"

namespace marovia {
namespace {

// A place as its row in the upper 16 bits and its column in the lower: the corner of the block of
// children of a place is twice it.
constexpr std::uint32_t PlaceOf(std::uint32_t r, std::uint32_t c) {
  return r << 16 | c;
}

// The block of children at (2i, 2j) is walked as a connected path (over the middle in the diagonal
// band): the offsets of its four places in that order, for the parents of each band in the order in
// which ASWDR visits them.
constexpr std::uint32_t kBlockWalks[3][4] = {
    {PlaceOf(0, 0), PlaceOf(1, 0), PlaceOf(1, 1), PlaceOf(0, 1)},   // right
    {PlaceOf(0, 0), PlaceOf(0, 1), PlaceOf(1, 1), PlaceOf(1, 0)},   // lower
    {PlaceOf(0, 0), PlaceOf(1, 0), PlaceOf(0, 1), PlaceOf(1, 1)}};  // diagonal

// The homes of a corner, which are numbered before all others.
Home CornerSize(const BandGrid& grid, int level) {
  return static_cast<Home>(grid.CornerRows(level)) * static_cast<Home>(grid.CornerCols(level));
}

ScanOrder FixedPart(const BandGrid& grid) {
  if (grid.levels < 2) return CreateScanOrder(grid);
  ScanOrder order{LowBand(grid)};
  AppendLevel(order, grid, 1, LevelOrderKind::kRightFirst);
  return order;
}

ScanOrder LeftOverPart(const BandGrid& grid) {
  ScanOrder order;
  if (grid.levels >= 2) AppendLeftOver(order, grid);
  return order;
}

std::vector<Stretch> MakeStretches(const BandGrid& grid) {
  const auto size = static_cast<Home>(grid.Size());
  if (grid.levels < 2) return {{0, size, false}};
  Home end = CornerSize(grid, 2);
  std::vector<Stretch> stretches{{0, end, false}};
  for (int level = 2; level <= grid.levels; ++level) {
    stretches.push_back({end, 4 * end, true});
    end *= 4;
  }
  if (end < size) stretches.push_back({end, size, false});
  return stretches;
}

// Calls visit(child, place) for the children of a share of the homes from `first` to `last` - 1,
// those of one level, whose three bands follow one another.
template <class Visit>
void ForChildren(const Buffer<std::uint32_t>& places, Home first, Home last, Share share,
                 Visit visit) {
  const Home bandSize = (last - first) / 3;
  const auto parents = share.Of(bandSize);
  for (const auto& walk : kBlockWalks) {
    const Home end = first + static_cast<Home>(parents.last);
    for (Home parent = first + static_cast<Home>(parents.first); parent < end; ++parent) {
      const std::uint32_t corner = 2 * places[parent];
      for (Home i = 0; i < 4; ++i) visit(4 * parent + i, corner + walk[i]);
    }
    first += bandSize;
  }
}

}  // namespace

AdaptiveOrder::AdaptiveOrder(const BandGrid& grid)
    : VisitingOrder(grid, MakeStretches(grid)),
      fixed_(FixedPart(grid)),
      leftOver_(LeftOverPart(grid)) {
  for (const Stretch& stretch : Stretches()) {
    if (!stretch.ordered) continue;
    Level& level = levels_.emplace_back();
    level.number = static_cast<int>(levels_.size()) + 1;
    level.firstBlock = stretch.first / 4;
    level.lastBlock = stretch.last / 4;
  }
  if (!levels_.empty()) NumberParents();
}

void AdaptiveOrder::NumberParents() {
  parents_.resize(levels_.back().lastBlock);
  const auto cols = static_cast<std::uint32_t>(TheGrid().cols);
  ForOrder(fixed_, TheGrid(), 0, {}, [&](Home home, std::uint32_t position) {
    parents_[home] = PlaceOf(position / cols, position % cols);
  });
  for (std::size_t i = 0; i + 1 < levels_.size(); ++i) {
    ForChildren(parents_, levels_[i].firstBlock, levels_[i].lastBlock, {},
                [this](Home child, std::uint32_t place) { parents_[child] = place; });
  }
}

template <class Visit>
void AdaptiveOrder::ForHomes(Share share, Visit visit) const {
  ForOrder(fixed_, TheGrid(), 0, share, visit);
  const auto cols = static_cast<std::uint32_t>(TheGrid().cols);
  for (const Level& level : levels_) {
    ForChildren(parents_, level.firstBlock, level.lastBlock, share,
                [visit, cols](Home child, std::uint32_t place) {
                  visit(child, (place >> 16) * cols + (place & 0xFFFF));
                });
  }
  const Home banded = levels_.empty() ? 0 : 4 * levels_.back().lastBlock;
  ForOrder(leftOver_, TheGrid(), banded, share, visit);
}

Buffer<float> AdaptiveOrder::Gather(std::span<const float> grid, int threads) const {
  return GatherHomes(*this, grid, threads);
}

void AdaptiveOrder::Scatter(std::span<const float> homes, std::span<float> grid,
                            int threads) const {
  ScatterHomes(*this, homes, grid, threads);
}

Walk AdaptiveOrder::Positions() const {
  return PositionsOfHomes(*this);
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
  return {level.homes, level.blocksOfFound.Homes(), level.blocksWithFound.Homes(),
          level.blocksWithout.Homes()};
}

// Before the second pass a level is visited in the walk of its bands.
void AdaptiveOrder::MakeFirst(Level& level) {
  ScanOrder order;
  AppendLevel(order, TheGrid(), level.number, LevelOrderKind::kRightFirst);
  level.homes = WalkOf(order, TheGrid());
  const auto cols = static_cast<std::uint32_t>(TheGrid().cols);
  // As many positions as lie before the end of the level's last band.
  const auto rows = 2 * static_cast<std::size_t>(TheGrid().CornerRows(level.number));
  Buffer<Home> homeAt(rows * cols);
  ForChildren(parents_, level.firstBlock, level.lastBlock, {},
              [&](Home child, std::uint32_t place) {
                homeAt[(place >> 16) * cols + (place & 0xFFFF)] = child;
              });
  for (Home& home : level.homes) home = homeAt[home];
  level.made = true;
}

void AdaptiveOrder::Make(std::size_t index) {
  Level& level = levels_[index];
  level.homes.clear();
  for (HomeList* blocks : {&level.blocksOfFound, &level.blocksWithFound, &level.blocksWithout}) {
    blocks->Clear(level.lastBlock - level.firstBlock);
  }
  if (index == 0) {
    // The parents keep their order, which is that of their numbers from the low band's size on.
    AppendParentsOf(level, level.firstBlock, level.lastBlock);
  } else {
    if (!levels_[index - 1].made) Make(index - 1);
    const Level& parents = levels_[index - 1];
    for (const HomeList* blocks :
         {&parents.blocksOfFound, &parents.blocksWithFound, &parents.blocksWithout}) {
      for (const Home block : blocks->Homes()) AppendParents(level, block, 0xF);
    }
  }
  level.made = true;
}

void AdaptiveOrder::AppendParentsOf(Level& level, Home first, Home last) {
  for (Home block = first / 4; 4 * block < last; ++block) {
    std::uint64_t within = 0xF;
    if (4 * block < first) within &= 0xFU << (first - 4 * block);
    if (4 * block + 4 > last) within &= 0xFU >> (4 * block + 4 - last);
    AppendParents(level, block, within);
  }
}

// Of the parents of a block those that `within` marks, each to the list that it belongs to; in most
// blocks nothing is found, and neither are children.
void AdaptiveOrder::AppendParents(Level& level, Home block, std::uint64_t within) {
  std::uint64_t children = found_->Children(block);
  if ((found_->Block(block) | children) == 0) {
    level.blocksWithout.AppendBlock(4 * block, within);
    return;
  }
  const std::uint64_t found = found_->Block(block) & within;
  // Bit 4i is set where any of the four bits from there on is, then the four are gathered.
  children |= children >> 1;
  children |= children >> 2;
  const std::uint64_t any = (children & 0x1111) * 0x1248 >> 12 & within;
  level.blocksOfFound.AppendBlock(4 * block, found);
  level.blocksWithFound.AppendBlock(4 * block, any & ~found);
  level.blocksWithout.AppendBlock(4 * block, within & ~(found | any));
}

}  // namespace marovia
