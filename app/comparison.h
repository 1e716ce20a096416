// The source and its reconstruction, pixel by pixel.
#pragma once

#include <string>

#include "marovia/image.h"

#include "app/shared_value.h"

namespace marovia {

// Columns by rows: "512 x 384".
std::string SizeText(const Image& image);

class Comparison {
 public:
  // Either may be empty, not both.
  Comparison(SharedValue<Image> source, SharedValue<Image> reconstruction, bool prefersSource);

  // Images of two shapes have no difference; then only the preferred one is shown.
  [[nodiscard]] bool HasTwo() const { return hasTwo_; }
  [[nodiscard]] bool ShowsSource() const;
  [[nodiscard]] const Image& Shown() const { return ShowsSource() ? Source() : Reconstruction(); }
  // What stands above the image.
  [[nodiscard]] std::string Caption() const;
  [[nodiscard]] const Image& Source() const { return *source_; }
  [[nodiscard]] const Image& Reconstruction() const { return *reconstruction_; }

  // Mid-grey where the two agree, brighter by `gain` for each step that the reconstruction is.
  [[nodiscard]] Image Difference(int gain) const;
  // "Row 3, column 7:   source 100   reconstruction 110   difference 10" for the pixel around a
  // point; outside how to get there.
  [[nodiscard]] std::string ReadOut(double down, double across) const;

 private:
  SharedValue<Image> source_;
  SharedValue<Image> reconstruction_;
  bool hasTwo_;
  bool prefersSource_;
};

}  // namespace marovia
