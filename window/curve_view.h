// PSNR against bytes, drawn while it is computed. A press sets the rate.
#pragma once

#include <QCoreApplication>
#include <QWidget>

#include "window/session.h"

namespace marovia {

class CurveView : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(CurveView)

 public:
  // The session must outlive the view.
  explicit CurveView(const Session& session);

  std::function<void(std::int64_t bytes)> onBytes;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override { Tell(*event); }
  void mouseMoveEvent(QMouseEvent* event) override { Tell(*event); }

 private:
  struct Axis {
    double low, high, step;
  };

  [[nodiscard]] QRectF Area() const;
  [[nodiscard]] Axis Decibels() const;
  [[nodiscard]] QPointF Place(std::int64_t bytes, double psnr, const Axis& axis) const;
  void Tell(const QMouseEvent& event);
  void PaintGrid(QPainter& painter, const Axis& axis) const;
  void PaintCurve(QPainter& painter, const KindCurve& curve, const QColor& colour, int width,
                  const Axis& axis) const;
  void PaintMark(QPainter& painter, const Axis& axis) const;
  void PaintLegend(QPainter& painter) const;

  const Session& session_;
};

}  // namespace marovia
