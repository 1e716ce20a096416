// Where an axis has its marks, at numbers that people like to read.
#pragma once

#include <string>
#include <vector>

namespace marovia {

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
