#include "passes/resting_order.h"

namespace marovia {
namespace {

constexpr Home kColumnBits = 0x55555555U;

// Row and column of a place in a tile, from its alternating bits.
Home EvenBits(Home bits) {
  bits &= kColumnBits;
  bits = (bits | bits >> 1) & 0x33333333U;
  bits = (bits | bits >> 2) & 0x0F0F0F0FU;
  bits = (bits | bits >> 4) & 0x00FF00FFU;
  return (bits | bits >> 8) & 0xFFFFU;
}

}  // namespace

RestingOrder::RestingOrder(const BandGrid& grid) : grid_(grid) {
  const auto lowRows = static_cast<Home>(grid.CornerRows(1));
  const auto lowCols = static_cast<Home>(grid.CornerCols(1));
  Home tileSize = 1;
  for (int level = 1; level <= grid.levels; ++level, tileSize *= 4) {
    const Home within = tileSize - 1;
    levels_.push_back({lowRows * lowCols * tileSize, tileSize, lowCols, lowCols * tileSize,
                       within & kColumnBits, within & ~kColumnBits});
    banded_ = 4 * levels_.back().bandSize;
  }
  for (std::size_t bits = 0; bits < highestLevels_.size(); ++bits) {
    const std::uint64_t most = (std::uint64_t{1} << bits) - 1;
    while (highestLevels_[bits] + 1U < levels_.size() &&
           levels_[highestLevels_[bits] + 1U].bandSize <= most)
      ++highestLevels_[bits];
  }
  const auto cols = static_cast<std::uint32_t>(grid.cols);
  for (Home place = 0; place < tileSize / 4; ++place) {
    offsets_.push_back(EvenBits(place >> 1) * cols + EvenBits(place));
  }
  AppendLeftOver(leftOver_, grid);
}

std::uint32_t RestingOrder::TileCorner(const Level& level, unsigned band, Home tile) const {
  const auto side = static_cast<std::uint32_t>(1) << ((std::bit_width(level.tileSize) - 1) / 2);
  const auto tileRows = level.bandSize / level.tileRow;
  const Home row = (tile / level.tileCols + (band >= 2 ? tileRows : 0)) * side;
  const Home col = (tile % level.tileCols + (band % 2 == 1 ? level.tileCols : 0)) * side;
  return row * static_cast<std::uint32_t>(grid_.cols) + col;
}

template <class Visit>
void RestingOrder::ForHomes(Share share, Visit visit) const {
  Home first = 0;  // of a band
  for (const Level& level : levels_) {
    const auto tiles = share.Of(level.bandSize / level.tileSize);
    for (unsigned band = first == 0 ? 0 : 1; band < 4; ++band, first += level.bandSize) {
      for (auto tile = static_cast<Home>(tiles.first); tile < tiles.last; ++tile) {
        const std::uint32_t corner = TileCorner(level, band, tile);
        for (Home place = 0; place < level.tileSize; ++place) {
          visit(first + tile * level.tileSize + place, corner + offsets_[place]);
        }
      }
    }
  }
  ForOrder(leftOver_, grid_, banded_, share, visit);
}

Buffer<float> RestingOrder::Gather(std::span<const float> grid, int threads) const {
  return GatherHomes(*this, grid, threads);
}

Walk RestingOrder::Positions() const {
  return PositionsOfHomes(*this);
}

std::uint32_t RestingOrder::PositionOf(Home home) const {
  if (home >= banded_) return LeftOverPosition(home - banded_);
  const Level& level = LevelOf(home);
  const Home band = BandOf(home, level);
  const Home place = home - band * level.bandSize;
  return TileCorner(level, band, place / level.tileSize) + offsets_[place % level.tileSize];
}

std::uint32_t RestingOrder::LeftOverPosition(Home home) const {
  for (const BandWalk& band : leftOver_) {
    const auto cols = static_cast<Home>(band.cols);
    if (home < band.Size()) {
      return grid_.Position(band.row, band.col) + home / cols * static_cast<Home>(grid_.cols) +
             home % cols;
    }
    home -= static_cast<Home>(band.Size());
  }
  return 0;
}

}  // namespace marovia
