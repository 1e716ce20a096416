// Shows one of the form's pictures, and turns mouse and keys into its coordinates.
#pragma once

#include <QBasicTimer>
#include <QImage>
#include <QPoint>
#include <QWidget>
#include <functional>
#include <optional>

#include "app/control_kinds.h"

namespace marovia {

// The picture stands in the middle at the largest whole factor that fits, in pixels of the screen,
// so that nothing is blurred and every screen pixel belongs to one coordinate, 1 to 256.
//
// A rectangle is drawn by dragging, or from the keyboard: an arrow key brings up a crosshair (with
// Shift it moves 16 at a time), Space or Enter sets one corner and then the other, Esc gives up.
class PictureView : public QWidget {
 public:
  explicit PictureView(QWidget* parent = nullptr);

  // A drag in coordinates: begun, gone on, ended. Without onDown nothing can be drawn.
  std::function<void(QPoint)> onDown;
  std::function<void(QPoint)> onMove;
  std::function<void(QPoint)> onUp;
  // A double-click, or Enter without a crosshair.
  std::function<void()> onOpen;
  // What stands in an empty picture.
  QString placeholder;

  void ShowPicture(const PictureBox& picture);
  // Of a position in the widget; outside the picture, of the nearest pixel.
  [[nodiscard]] QPoint CoordinateAt(QPointF position) const;
  // The middle of a coordinate's pixel, in the widget.
  [[nodiscard]] QPointF PositionOf(QPoint coordinate) const;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  // Screen pixels a coordinate, and where the picture begins in screen pixels.
  [[nodiscard]] int Factor() const;
  [[nodiscard]] QPoint Origin() const;
  // In screen pixels, from the pixel of one coordinate to that of another.
  [[nodiscard]] QRect Span(QPoint first, QPoint last) const;
  void PaintEmpty(QPainter& painter) const;
  void PaintMarks(QPainter& painter) const;

  void PassClickOn();
  [[nodiscard]] bool CanDraw() const { return onDown && !image_.isNull(); }
  void MoveCrosshair(QPoint step);
  void SetCorner();
  void PutCrosshairAway();

  QImage image_;
  std::optional<Outline> outline_;

  // A press is passed on once it is a drag or cannot become a double-click any more.
  std::optional<QPointF> pressed_;
  bool dragging_ = false;
  QBasicTimer singleClick_;

  std::optional<QPoint> crosshair_;
  bool cornerSet_ = false;
};

}  // namespace marovia
