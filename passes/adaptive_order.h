// The adaptive order of visiting: after every pass the homes of each finer level are put in the
// order of their parents, those first whose parent is found, then those with a found sibling, then
// the rest.
#pragma once

#include <vector>

#include "passes/homes.h"
#include "passes/visiting_order.h"

namespace marovia {

// The low band and the coarsest detail level keep the order of CreateScanOrder; their homes are
// numbered in it. The parent of a finer coefficient (i, j) is (i / 2, j / 2), and the four children
// of a home are numbered in the order in which their block is walked, which depends on the band
// alone. What no band covers stays at the end.
//
// The order of a level follows from that of its parents' level and from what is found, not from its
// own past. So it is made only when a pass asks for it: a level in which nothing is found costs
// nothing.
class AdaptiveOrder final : public VisitingOrder {
 public:
  explicit AdaptiveOrder(const BandGrid& grid);

  [[nodiscard]] Buffer<float> Gather(std::span<const float> grid, int threads) const override;
  void Scatter(std::span<const float> homes, std::span<float> grid, int threads) const override;
  [[nodiscard]] Walk Positions() const override;
  void Rebuild(const HomeSet& found) override;
  StretchOrder OrderOf(std::size_t stretch) override;

  // Calls visit(home, position) for a share of the homes.
  template <class Visit>
  void ForHomes(Share share, Visit visit) const;

 private:
  struct Level {
    int number = 0;  // of the level in the grid; 2 is the first with parents
    Home firstBlock = 0;
    Home lastBlock = 0;
    bool made = false;
    Buffer<Home> homes;
    HomeList blocksOfFound;
    HomeList blocksWithFound;
    HomeList blocksWithout;
  };

  void NumberParents();
  void MakeFirst(Level& level);
  void Make(std::size_t index);
  void AppendParentsOf(Level& level, Home first, Home last);
  void AppendParents(Level& level, Home block, std::uint64_t within);

  ScanOrder fixed_;            // the bands that keep their order
  ScanOrder leftOver_;         // what no band covers
  std::vector<Level> levels_;  // the finer ones, from the coarsest on
  // Row (upper 16 bits) and column of every home that has children.
  Buffer<std::uint32_t> parents_;
  const HomeSet* found_ = nullptr;  // none before the second pass
};

}  // namespace marovia
