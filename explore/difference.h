// What the views of two images show: how far they are apart, and an image made small.
#pragma once

#include <memory>
#include <vector>

#include "marovia/image.h"

namespace marovia {

// `gain` times the magnitude of the difference, white from 255 on. Images of one shape.
Image MagnitudeImage(const Image& source, const Image& picture, int gain);

// An image and its halves, quarters, ...: to show it small takes no more time than to show it
// large.
class Pyramid {
 public:
  Pyramid() = default;
  explicit Pyramid(std::shared_ptr<const Image> image);

  [[nodiscard]] bool Empty() const { return steps_.empty(); }
  [[nodiscard]] const Image& Whole() const { return *steps_.front(); }
  // The smallest that is not enlarged where a pixel of the image is `scale` pixels of the screen.
  [[nodiscard]] const Image& ForScale(double scale) const;

 private:
  std::vector<std::shared_ptr<const Image>> steps_;
};

}  // namespace marovia
