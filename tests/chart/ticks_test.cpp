#include "chart/line_chart.h"
#include "tests/support/testing.h"

namespace marovia {
namespace {

TEST(NiceAxis, HasTicksThatPeopleRead) {
  const std::tuple<double, double, double, int> cases[] = {
      {0, 2, 0.5, 1}, {24.3, 41.2, 5, 0}, {-3, 12, 5, 0}, {0, 0.07, 0.02, 2}, {5, 5, 0.2, 1}};
  for (const auto& [least, most, step, digits] : cases) {
    const Axis axis = NiceAxis(least, most, 5);
    EXPECT_TRUE(axis.from <= least && axis.to >= most && axis.ticks.size() <= 8) << least;
    EXPECT_NEAR(axis.ticks[1] - axis.ticks[0], step, 1e-9) << least;
    EXPECT_EQ(axis.digits, digits) << least;
  }
}

TEST(SvgOf, StaysWellFormedWhateverTheTextsHoldAndWithoutPoints) {
  const std::string svg = SvgOf({"a < b & c\n", "", "", {{"<1>", {}, 7, 9}, {"", {{1, 1}}, 4, 1}}});
  EXPECT_NE(svg.find("a &lt; b &amp; c?"), std::string::npos);
  EXPECT_EQ(svg.find("nan"), std::string::npos);
  EXPECT_EQ(svg.find("inf"), std::string::npos);
}

TEST(SvgOf, NamesTheCurvesInTheOrderInWhichTheyEnd) {
  const std::string svg =
      SvgOf({"", "", "", {{"low", {{0, 9}, {1, 2}}}, {"high", {{0, 1}, {1, 8}}}}});
  EXPECT_LT(svg.find("high"), svg.find("low"));
}

}  // namespace
}  // namespace marovia
