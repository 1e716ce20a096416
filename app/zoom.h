// How large the viewer shows its images.
#pragma once

#include <string>

namespace marovia {

// In screen pixels an image pixel, held to 1/16 to 32.
class Zoom {
 public:
  explicit Zoom(double factor);

  // After a turn of the wheel, in eighths of a degree; two notches double it.
  [[nodiscard]] Zoom Turned(int angle) const;
  [[nodiscard]] Zoom Times(double factor) const { return Zoom(factor_ * factor); }
  [[nodiscard]] double Factor() const { return factor_; }
  // "50 %"
  [[nodiscard]] std::string Text() const;

 private:
  double factor_;
};

}  // namespace marovia
