#include "coding/visiting_order.h"

#include <utility>

namespace marovia {

VisitingOrder::VisitingOrder(const BandGrid& grid, std::vector<Stretch> stretches)
    : grid_(grid), stretches_(std::move(stretches)) {}

FixedOrder::FixedOrder(const BandGrid& grid)
    : VisitingOrder(grid, {{0, static_cast<Home>(grid.Size()), false}}),
      order_(CreateScanOrderHF(grid)) {}

Buffer<float> FixedOrder::Gather(std::span<const float> grid) const {
  Buffer<float> homes(grid.size());
  float* to = homes.Data();
  const float* from = grid.data();
  ForOrder(order_, TheGrid(), 0,
           [=](Home home, std::uint32_t position) { to[home] = from[position]; });
  return homes;
}

void FixedOrder::Scatter(std::span<const float> homes, std::span<float> grid) const {
  float* to = grid.data();
  const float* from = homes.data();
  ForOrder(order_, TheGrid(), 0,
           [=](Home home, std::uint32_t position) { to[position] = from[home]; });
}

Walk FixedOrder::Positions() const {
  return WalkOf(order_, TheGrid());
}

}  // namespace marovia
