#include "chart/ticks.h"

#include <gtest/gtest.h>

#include "chart/line_chart.h"

namespace marovia {
namespace {

TEST(NiceAxis, HasTicksThatPeopleRead) {
  struct Case {
    double least;
    double most;
    double step;
    int digits;
  };
  for (const Case& one : {Case{0, 2, 0.5, 1},
                          {24.3, 41.2, 5, 0},
                          {0, 1.5, 0.5, 1},
                          {-3, 12, 5, 0},
                          {0, 0.07, 0.02, 2},
                          {5, 5, 0.2, 1}}) {
    const Axis axis = NiceAxis(one.least, one.most, 5);
    EXPECT_LE(axis.from, one.least);
    EXPECT_GE(axis.to, one.most);
    EXPECT_NEAR(axis.ticks[1] - axis.ticks[0], one.step, 1e-9) << one.least << " to " << one.most;
    EXPECT_EQ(axis.digits, one.digits) << one.least << " to " << one.most;
    EXPECT_LE(axis.ticks.size(), 8U);
  }
}

TEST(SvgOf, StaysWellFormedWhateverTheTextsHoldAndWithoutPoints) {
  const std::string svg = SvgOf({"a < b & c\n", "", "", {{"<1>", {}, 7, 9}, {"", {{1, 1}}, 4, 1}}});
  EXPECT_NE(svg.find("a &lt; b &amp; c?"), std::string::npos);
  EXPECT_EQ(svg.find("nan"), std::string::npos);
  EXPECT_EQ(svg.find("inf"), std::string::npos);
}

}  // namespace
}  // namespace marovia
