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

inline constexpr int kChartColours = 7;
inline constexpr int kChartDashes = 4;

std::string SvgOf(const LineChart& chart);

struct Axis {
  double from = 0;
  double to = 1;
  std::vector<double> ticks;  // from first to last, both ends among them
  int digits = 0;             // behind the point, so that no two ticks read the same
};

// The shortest axis that holds both values and has its ends on ticks, about `count` of them, whose
// distance is 1, 2 or 5 times a power of ten.
Axis NiceAxis(double least, double most, int count);

// In fixed notation, whatever the locale.
std::string FixedText(double value, int digits);

}  // namespace marovia
