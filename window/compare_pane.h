// Shows one image or two of a shape at any zoom, one wiped over the other.
#pragma once

#include <QAbstractScrollArea>
#include <QImage>
#include <functional>
#include <optional>

namespace marovia {

class ComparePane : public QAbstractScrollArea {
 public:
  explicit ComparePane(QWidget* parent = nullptr);

  // The image pixel under the pointer; nothing where there is none.
  std::function<void(std::optional<QPoint>)> onPoint;
  // The wheel with Ctrl, in notches.
  std::function<void(double notches)> onZoom;
  std::function<void(double share)> onSplit;

  // `under` shows right of the split; null where there is nothing to wipe to.
  void SetImages(const QImage& image, const QImage& under = {});
  // Screen pixels an image pixel. What is in the middle stays there.
  void SetZoom(double zoom);
  // Where `under` begins: 0 at the left edge of the pane, 1 at the right.
  void SetSplit(double share);
  // The zoom at which all of the image is in view.
  [[nodiscard]] double FittingZoom() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  // In screen pixels.
  [[nodiscard]] QSizeF Room() const;
  [[nodiscard]] QRectF Target() const;
  void UpdateRanges();
  [[nodiscard]] double SplitPosition() const;
  [[nodiscard]] bool IsOnSplit(QPointF position) const;

  QImage image_;
  QImage under_;
  double zoom_ = 1;
  double split_ = 1;
  bool movesSplit_ = false;
  QPointF dragged_;
};

}  // namespace marovia
