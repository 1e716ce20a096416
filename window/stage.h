// Where the studio shows its pictures, and a region is drawn on them.
#pragma once

#include <QCoreApplication>
#include <QWidget>
#include <functional>
#include <optional>

#include "explore/difference.h"
#include "explore/region_grip.h"
#include "explore/viewport.h"

namespace marovia {

enum class View { kPicture, kWipe, kSideBySide, kDifference, kHeat };

class Stage : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(Stage)

 public:
  Stage();

  // Any of them may be empty. Of an image of another size all is fitted.
  void SetSource(const Pyramid& source);
  void SetPicture(const Pyramid& picture, const Pyramid& layer, const QString& caption);
  void SetView(View view);
  void SetRegion(const std::optional<Region>& region);
  // Whether the mouse draws regions, rather than moving the picture.
  void SetDrawing(bool drawing);

  // Around the middle, a pixel of the image so many of the screen.
  void ZoomTo(double scale);
  void ZoomBy(double factor) { ZoomTo(view_.Scale() * factor); }
  void Fit();
  [[nodiscard]] double Scale() const { return view_.Scale(); }

  std::function<void(const QString& text)> onReadout;
  std::function<void()> onZoom;
  // While it is drawn, and then once more when it is there.
  std::function<void(const Region& region, bool done)> onRegion;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;

 private:
  enum class Drag { kNone, kPan, kWipe, kRegion };

  [[nodiscard]] const Pyramid& Any() const { return picture_.Empty() ? source_ : picture_; }
  // The part of the screen that the picture has, in pixels; side by side, each of the two.
  [[nodiscard]] QRectF Pane(int index) const;
  // A place of the screen in the pane that it belongs to.
  [[nodiscard]] Spot InPane(QPointF place) const;
  [[nodiscard]] double SplitX() const;
  [[nodiscard]] std::optional<Grip> GripUnder(QPointF place) const;
  void SetPanes();
  void PaintPane(QPainter& painter, const QRectF& pane, const Pyramid& image, bool heat) const;
  void PaintCaption(QPainter& painter, const QRectF& pane, const QString& text) const;
  void PaintRegion(QPainter& painter, const QRectF& pane) const;
  void ShowCursor(QPointF place);
  void ReadOut(QPointF place);
  void MoveBy(Spot by);
  void Changed();

  Pyramid source_;
  Pyramid picture_;
  Pyramid layer_;
  QString caption_;
  View mode_ = View::kPicture;
  Viewport view_;
  double split_ = 0.5;    // of the pane's width
  bool peeking_ = false;  // at the source, as long as a key is held
  std::optional<Region> region_;
  bool drawing_ = false;

  Drag drag_ = Drag::kNone;
  QPointF pressed_;
  QPointF last_;
  std::optional<Grip> grip_;
  std::optional<Region> before_;  // the drag
};

}  // namespace marovia
