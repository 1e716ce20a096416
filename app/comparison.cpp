#include "app/comparison.h"

#include <cmath>
#include <utility>

#include "marovia/measures.h"

namespace marovia {
namespace {

bool Has(const Image& image, int row, int col) {
  return row >= 0 && col >= 0 && row < image.Rows() && col < image.Cols();
}

std::string Sample(const std::string& what, const Image& image, int row, int col) {
  if (!Has(image, row, col)) return {};
  return "   " + what + " " + std::to_string(image(row, col));
}

}  // namespace

std::string SizeText(const Image& image) {
  return std::to_string(image.Cols()) + " x " + std::to_string(image.Rows());
}

Comparison::Comparison(SharedValue<Image> source, SharedValue<Image> reconstruction,
                       bool prefersSource)
    : source_(std::move(source)),
      reconstruction_(std::move(reconstruction)),
      hasTwo_(!source_->Empty() && source_->SameShape(*reconstruction_)),
      prefersSource_(prefersSource) {}

bool Comparison::ShowsSource() const {
  return hasTwo_ || reconstruction_->Empty() || (prefersSource_ && !source_->Empty());
}

std::string Comparison::Caption() const {
  if (hasTwo_) return "Left the source, right the reconstruction";
  return ShowsSource() ? "Source" : "Reconstruction";
}

Image Comparison::Difference(int gain) const {
  return DifferenceImage(*source_, *reconstruction_, gain);
}

std::string Comparison::ReadOut(double down, double across) const {
  const int row = static_cast<int>(std::floor(down));
  const int col = static_cast<int>(std::floor(across));
  if (!Has(Shown(), row, col)) return "Point at a pixel to read it. Ctrl and the wheel zoom.";
  std::string text = "Row " + std::to_string(row) + ", column " + std::to_string(col) + ":" +
                     Sample("source", Source(), row, col) +
                     Sample("reconstruction", Reconstruction(), row, col);
  if (hasTwo_)
    text += "   difference " + std::to_string(Reconstruction()(row, col) - Source()(row, col));
  return text;
}

}  // namespace marovia
