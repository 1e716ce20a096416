// Which part of an image a pane shows, and how large. Lengths are pixels of the screen.
#pragma once

namespace marovia {

struct Spot {
  double x = 0;
  double y = 0;
};

struct Extent {
  double width = 0;
  double height = 0;
};

class Viewport {
 public:
  // Another image is fitted; of one of the same size the part in view stays.
  void SetImage(Extent image);
  void SetPane(Extent pane);

  // Pixels of the screen a pixel of the image.
  [[nodiscard]] double Scale() const { return scale_; }
  [[nodiscard]] bool Fits() const { return fits_; }
  [[nodiscard]] Spot ToImage(Spot pane) const;
  [[nodiscard]] Spot ToPane(Spot image) const;

  // All of the image, in the middle, never enlarged; a pane that changes is fitted again.
  void Fit();
  // What lies at `fixed` in the pane stays there.
  void ZoomTo(double scale, Spot fixed);
  void ZoomBy(double factor, Spot fixed) { ZoomTo(scale_ * factor, fixed); }
  [[nodiscard]] Spot Middle() const { return {pane_.width / 2, pane_.height / 2}; }
  void PanBy(double right, double down);

 private:
  void Hold();

  Extent image_;
  Extent pane_;
  double scale_ = 1;
  Spot corner_;  // of the image in the pane
  bool fits_ = true;
};

}  // namespace marovia
