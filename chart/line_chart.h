// A chart of curves as a picture of lines (SVG), readable on light and on dark ground.
#pragma once

#include <string>
#include <vector>

namespace marovia {

struct ChartPoint {
  double x;
  double y;
};

struct Curve {
  std::string label;
  std::vector<ChartPoint> points;
  int colour = 0;  // with its mark, one of kChartColours
  int dash = 0;    // one of kChartDashes; 0 is a whole line
};

struct LineChart {
  std::string title;
  std::string xLabel;
  std::string yLabel;
  std::vector<Curve> curves;
};

inline constexpr int kChartColours = 6;
inline constexpr int kChartDashes = 4;

std::string SvgOf(const LineChart& chart);

}  // namespace marovia
