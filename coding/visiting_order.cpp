#include "coding/visiting_order.h"

#include <utility>

namespace marovia {

VisitingOrder::VisitingOrder(Walk positions, std::vector<Stretch> stretches)
    : positions_(std::move(positions)), stretches_(std::move(stretches)) {}

FixedOrder::FixedOrder(const BandGrid& grid)
    : VisitingOrder(CreateScanOrderHF(grid), {{0, static_cast<Home>(grid.Size()), false}}) {}

}  // namespace marovia
