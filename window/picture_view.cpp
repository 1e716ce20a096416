#include "window/picture_view.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "window/shown_image.h"

namespace marovia {
namespace {

constexpr int kSide = 256;
// Around the picture: the focus frame, and what of an outline at the edge lies outside.
constexpr int kRim = 2;
constexpr int kLongStep = 16;
// A hand that clicks moves this far without meaning a drag.
constexpr double kClickSlack = 3;
const QColor kUnderLine(0, 0, 0, 190);

int Unit(const QWidget& widget) {
  return std::max(1, static_cast<int>(std::lround(widget.devicePixelRatioF())));
}

void PaintFrame(QPainter& painter, const QRect& outer, int width, const QColor& colour) {
  const QRect inner = outer.adjusted(width, width, -width, -width);
  for (const QRect& part : QRegion(outer).subtracted(inner)) painter.fillRect(part, colour);
}

std::optional<QPoint> StepOfKey(int key) {
  switch (key) {
    case Qt::Key_Left:
      return QPoint(-1, 0);
    case Qt::Key_Right:
      return QPoint(1, 0);
    case Qt::Key_Up:
      return QPoint(0, -1);
    case Qt::Key_Down:
      return QPoint(0, 1);
    default:
      return std::nullopt;
  }
}

}  // namespace

PictureView::PictureView(QWidget* parent) : QWidget(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void PictureView::ShowPicture(const PictureBox& picture) {
  image_ = ShownImage(picture.raster).copy();
  outline_ = picture.outline;
  setCursor(CanDraw() ? Qt::CrossCursor : Qt::ArrowCursor);
  if (!CanDraw()) crosshair_.reset();
  update();
}

QSize PictureView::sizeHint() const {
  const int side =
      static_cast<int>(std::ceil(kSide * Unit(*this) / devicePixelRatioF())) + 2 * kRim;
  return {side, side};
}

int PictureView::Factor() const {
  const int room = std::min(width(), height()) - 2 * kRim;
  return std::max(1, static_cast<int>(room * devicePixelRatioF()) / kSide);
}

QPoint PictureView::Origin() const {
  const QSizeF free = QSizeF(size()) * devicePixelRatioF() - QSizeF(kSide, kSide) * Factor();
  return {static_cast<int>(free.width() / 2), static_cast<int>(free.height() / 2)};
}

QPoint PictureView::CoordinateAt(QPointF position) const {
  const QPointF pixel = (position * devicePixelRatioF() - Origin()) / Factor();
  const auto held = [](double place) {
    return std::clamp(static_cast<int>(std::floor(place)) + 1, 1, kSide);
  };
  return {held(pixel.x()), held(pixel.y())};
}

QPointF PictureView::PositionOf(QPoint coordinate) const {
  return (QPointF(Origin()) + (QPointF(coordinate) - QPointF(0.5, 0.5)) * Factor()) /
         devicePixelRatioF();
}

QRect PictureView::Span(QPoint first, QPoint last) const {
  const QRect pixels = QRect(first, last).normalized();
  return {Origin() + (pixels.topLeft() - QPoint(1, 1)) * Factor(), pixels.size() * Factor()};
}

void PictureView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const double ratio = devicePixelRatioF();
  painter.scale(1 / ratio, 1 / ratio);
  const QRect picture = Span({1, 1}, {kSide, kSide});
  const int unit = Unit(*this);
  const QColor rim = palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid);
  const int rimWidth = hasFocus() ? 2 * unit : unit;
  PaintFrame(painter, picture.adjusted(-rimWidth, -rimWidth, rimWidth, rimWidth), rimWidth, rim);
  if (image_.isNull()) return PaintEmpty(painter);
  painter.drawImage(picture, image_);
  PaintMarks(painter);
}

void PictureView::PaintEmpty(QPainter& painter) const {
  const QRect picture = Span({1, 1}, {kSide, kSide});
  painter.fillRect(picture, palette().color(QPalette::Base));
  painter.resetTransform();
  painter.setPen(palette().color(QPalette::PlaceholderText));
  const double ratio = devicePixelRatioF();
  const QRectF room(QPointF(picture.topLeft()) / ratio, QSizeF(picture.size()) / ratio);
  painter.drawText(room.adjusted(16, 16, -16, -16), Qt::AlignCenter | Qt::TextWordWrap,
                   placeholder);
}

// Bright lines over wider dark ones are seen on any ground.
void PictureView::PaintMarks(QPainter& painter) const {
  const int unit = Unit(*this);
  if (outline_) {
    const auto& [corners, colour] = *outline_;
    const QRect box = Span({corners.col1, corners.row1}, {corners.col2, corners.row2});
    PaintFrame(painter, box.adjusted(-unit, -unit, unit, unit), 3 * unit, kUnderLine);
    PaintFrame(painter, box, unit, QColor(colour.red, colour.green, colour.blue));
  }
  if (crosshair_) {
    const QPoint middle = Span(*crosshair_, *crosshair_).center();
    const QRect picture = Span({1, 1}, {kSide, kSide});
    const QRect across(picture.left(), middle.y(), picture.width(), unit);
    const QRect down(middle.x(), picture.top(), unit, picture.height());
    painter.fillRect(across.adjusted(0, -unit, 0, unit), kUnderLine);
    painter.fillRect(down.adjusted(-unit, 0, unit, 0), kUnderLine);
    painter.fillRect(across, Qt::white);
    painter.fillRect(down, Qt::white);
  }
}

void PictureView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !CanDraw()) return;
  PutCrosshairAway();
  if (singleClick_.isActive()) PassClickOn();
  pressed_ = event->position();
}

void PictureView::mouseMoveEvent(QMouseEvent* event) {
  if (!pressed_ || (event->buttons() & Qt::LeftButton) == 0) return;
  if (!dragging_) {
    if ((event->position() - *pressed_).manhattanLength() < kClickSlack) return;
    singleClick_.stop();
    dragging_ = true;
    onDown(CoordinateAt(*pressed_));
  }
  onMove(CoordinateAt(event->position()));
}

void PictureView::mouseReleaseEvent(QMouseEvent* event) {
  if (!pressed_ || event->button() != Qt::LeftButton) return;
  if (!dragging_) return singleClick_.start(QApplication::doubleClickInterval(), this);
  dragging_ = false;
  pressed_.reset();
  onUp(CoordinateAt(event->position()));
}

void PictureView::timerEvent(QTimerEvent*) {
  PassClickOn();
}

void PictureView::PassClickOn() {
  singleClick_.stop();
  const QPoint place = CoordinateAt(*pressed_);
  pressed_.reset();
  onDown(place);
  onUp(place);
}

void PictureView::mouseDoubleClickEvent(QMouseEvent* event) {
  singleClick_.stop();
  pressed_.reset();
  if (event->button() == Qt::LeftButton && onOpen) onOpen();
}

void PictureView::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  const bool enters = key == Qt::Key_Return || key == Qt::Key_Enter;
  if (const auto step = StepOfKey(key); step && CanDraw()) {
    MoveCrosshair(*step * (event->modifiers().testFlag(Qt::ShiftModifier) ? kLongStep : 1));
  } else if (crosshair_ && (enters || key == Qt::Key_Space)) {
    SetCorner();
  } else if (crosshair_ && key == Qt::Key_Escape) {
    PutCrosshairAway();
  } else if (enters && onOpen) {
    onOpen();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void PictureView::MoveCrosshair(QPoint step) {
  const QPoint place = crosshair_ ? *crosshair_ + step : QPoint(kSide / 2, kSide / 2);
  crosshair_ = QPoint(std::clamp(place.x(), 1, kSide), std::clamp(place.y(), 1, kSide));
  setAccessibleDescription(
      QString("Crosshair at row %1, column %2").arg(crosshair_->y()).arg(crosshair_->x()));
  if (cornerSet_) onMove(*crosshair_);
  update();
}

// The first corner over a rectangle takes that one away, as a click does.
void PictureView::SetCorner() {
  const QPoint place = *crosshair_;
  if (cornerSet_) {
    cornerSet_ = false;
    crosshair_.reset();
    return onUp(place);
  }
  onDown(place);
  onMove(place);
  cornerSet_ = outline_.has_value();
}

void PictureView::PutCrosshairAway() {
  if (!crosshair_) return;
  const QPoint place = *crosshair_;
  crosshair_.reset();
  update();
  if (!cornerSet_) return;
  cornerSet_ = false;
  onUp(place);
  onDown(place);
}

void PictureView::focusOutEvent(QFocusEvent* event) {
  PutCrosshairAway();
  QWidget::focusOutEvent(event);
}

}  // namespace marovia
