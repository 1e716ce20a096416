// How a pass visits the homes: in an order of their own numbers, or in one made anew for each pass.
#pragma once

#include <span>
#include <utility>
#include <vector>

#include "marovia/grid.h"

#include "passes/homes.h"
#include "passes/scan_order.h"

namespace marovia {

// Homes first to last - 1, visited together. Where they are ordered, that order is asked for when a
// pass needs it; else they are visited in the order of their numbers.
struct Stretch {
  Home first;
  Home last;
  bool ordered;

  [[nodiscard]] std::int64_t Size() const { return std::int64_t{last} - first; }
};

// The order of an ordered stretch in one pass: before the second pass a list of homes, of which
// none is found; from then on blocks, first those that may hold found homes, then those that hold
// none.
struct StretchOrder {
  std::span<const Home> homes;
  std::span<const Home> blocksOfFound;  // their parents are found
  std::span<const Home> blocksWithFound;
  std::span<const Home> blocksWithout;
};

class VisitingOrder {
 public:
  VisitingOrder(const BandGrid& grid, std::vector<Stretch> stretches)
      : grid_(grid), stretches_(std::move(stretches)) {}
  virtual ~VisitingOrder() = default;
  VisitingOrder(const VisitingOrder&) = delete;
  VisitingOrder& operator=(const VisitingOrder&) = delete;

  [[nodiscard]] std::size_t HomeCount() const { return grid_.Size(); }
  [[nodiscard]] std::span<const Stretch> Stretches() const { return stretches_; }

  // Every home's value from the grid of positions, and back.
  [[nodiscard]] virtual Buffer<float> Gather(std::span<const float> grid, int threads) const = 0;
  virtual void Scatter(std::span<const float> homes, std::span<float> grid, int threads) const = 0;
  // Every home's position.
  [[nodiscard]] virtual Walk Positions() const = 0;

  // After a pass: the next one goes by what is found now. The set is read later as well, whenever
  // an order is asked for, and must not change until the next call.
  virtual void Rebuild(const HomeSet& found) = 0;
  // The order of an ordered stretch in this pass.
  virtual StretchOrder OrderOf(std::size_t stretch) = 0;

 protected:
  [[nodiscard]] const BandGrid& TheGrid() const { return grid_; }

 private:
  BandGrid grid_;
  std::vector<Stretch> stretches_;
};

// The order of WDR, the same in every pass.
class FixedOrder final : public VisitingOrder {
 public:
  explicit FixedOrder(const BandGrid& grid)
      : VisitingOrder(grid, {{0, static_cast<Home>(grid.Size()), false}}),
        order_(CreateScanOrderHF(grid)) {}

  [[nodiscard]] Buffer<float> Gather(std::span<const float> grid, int threads) const override {
    return GatherHomes(*this, grid, threads);
  }
  void Scatter(std::span<const float> homes, std::span<float> grid, int threads) const override {
    ScatterHomes(*this, homes, grid, threads);
  }
  [[nodiscard]] Walk Positions() const override { return PositionsOfHomes(*this); }
  void Rebuild(const HomeSet&) override {}
  StretchOrder OrderOf(std::size_t) override { return {}; }

  template <class Visit>
  void ForHomes(Share share, Visit visit) const {
    ForOrder(order_, TheGrid(), 0, share, visit);
  }

 private:
  ScanOrder order_;
};

}  // namespace marovia
