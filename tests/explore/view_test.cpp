// Where a view stands, how a region is dragged, what small and different images look like.
#include "explore/difference.h"
#include "explore/rate_scale.h"
#include "explore/region_grip.h"
#include "explore/viewport.h"
#include "tests/support/testing.h"

namespace marovia {

void PrintTo(const Region& region, std::ostream* out) {
  *out << region.row1 << ' ' << region.col1 << ' ' << region.row2 << ' ' << region.col2;
}
bool operator==(const Region& one, const Region& other) {
  return std::tie(one.row1, one.col1, one.row2, one.col2) ==
         std::tie(other.row1, other.col1, other.row2, other.col2);
}

namespace test {
namespace {

TEST(RateScale, LeadsThereAndBackInEveryUnit) {
  const RateScale scale{512 * 512, 300000};
  EXPECT_EQ(scale.Least(), 328);
  EXPECT_EQ(scale.BytesAt(0), 328);
  EXPECT_EQ(scale.BytesAt(1), 300000);
  for (const std::int64_t bytes : {328, 1000, 54321, 300000}) {
    EXPECT_EQ(scale.BytesAt(scale.PartOf(bytes)), bytes);
    EXPECT_EQ(scale.BytesOfRate(scale.RateOf(bytes)), bytes);
    EXPECT_EQ(scale.BytesOfRatio(scale.RatioOf(bytes)), bytes);
  }
  EXPECT_EQ(scale.BytesOfRatio(1e9), 328);
  EXPECT_EQ(scale.BytesOfRate(1e300), 300000);
  const RateScale tiny{1, 18};
  EXPECT_EQ(tiny.BytesAt(tiny.PartOf(5)), 18);
}

TEST(Viewport, KeepsWhatIsUnderThePointerAndLeavesNoGap) {
  Viewport view;
  view.SetImage({1000, 500});
  view.SetPane({400, 400});
  EXPECT_EQ(view.Scale(), 0.4);
  EXPECT_EQ(view.ToPane({0, 0}).y, 100);
  const Spot pointer{300, 250};
  const Spot under = view.ToImage(pointer);
  for (const double factor : {5.0, 2.0, 8.0, 0.5}) {
    view.ZoomBy(factor, pointer);
    EXPECT_NEAR(view.ToImage(pointer).x, under.x, 1 / view.Scale());
    EXPECT_NEAR(view.ToImage(pointer).y, under.y, 1 / view.Scale());
  }
  view.SetImage({1000, 500});
  EXPECT_FALSE(view.Fits());
  view.PanBy(1e6, -1e6);
  EXPECT_EQ(view.ToPane({0, 500}).x, 0);
  EXPECT_EQ(view.ToPane({0, 500}).y, 400);
  view.ZoomBy(1e-9, pointer);
  EXPECT_NEAR(view.ToPane({500, 0}).x, 200, 1);
  view.Fit();
  view.SetPane({2000, 2000});
  EXPECT_EQ(view.Scale(), 1);
}

TEST(RegionGrip, DragsBoundsCornersAndAllOfARegionInsideTheImage) {
  const Region region{20, 30, 59, 79};
  const struct {
    Spot from, by;
    Region after;
  } rows[] = {
      {{30, 40}, {-5, 9}, {20, 25, 59, 79}},     {{80, 60}, {7, -6}, {20, 30, 53, 86}},
      {{50, 20}, {3, -99}, {0, 30, 59, 79}},     {{50, 40}, {5, 6}, {26, 35, 65, 84}},
      {{50, 40}, {-500, 500}, {60, 0, 99, 49}},  {{30, 40}, {60, 0}, {20, 79, 59, 90}},
      {{81, 61}, {500, 500}, {20, 30, 99, 119}},
  };
  for (const auto& [from, by, after] : rows) {
    const auto grip = GripAt(region, from, 2);
    ASSERT_TRUE(grip);
    EXPECT_EQ(Dragged(region, *grip, by, 100, 120), after);
  }
  for (const Spot outside : {Spot{27, 40}, {83, 40}, {50, 17}, {50, 63}})
    EXPECT_FALSE(GripAt(region, outside, 2));
  EXPECT_EQ(RegionBetween({90.5, 3.2}, {-4, 700}, 100, 120), (Region{3, 0, 99, 90}));
}

TEST(Pyramid, HoldsMeansAndGivesTheSmallestThatIsNotEnlarged) {
  Image image(300, 401, 10);
  image(0, 0) = image(1, 1) = 255;
  const Pyramid pyramid(std::make_shared<const Image>(image));
  EXPECT_EQ(pyramid.ForScale(0.51), image);
  EXPECT_EQ(pyramid.ForScale(3), image);
  const Image& half = pyramid.ForScale(0.5);
  EXPECT_EQ(half.Rows() * 1000 + half.Cols(), 150200);
  EXPECT_EQ(half(0, 0) * 1000 + half(149, 199), 133010);
  EXPECT_EQ(pyramid.ForScale(0.001).Rows(), 75);
}

TEST(MagnitudeImage, IsWhiteWhereTheImagesAreFarApart) {
  const Image apart = MagnitudeImage({1, 2, 100}, {1, 2, 90}, 4);
  EXPECT_EQ(apart(0, 1), 40);
  EXPECT_EQ(MagnitudeImage({1, 1, 0}, {1, 1, 200}, 4)(0, 0), 255);
}

}  // namespace
}  // namespace test
}  // namespace marovia
