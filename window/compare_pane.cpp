#include "window/compare_pane.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace marovia {
namespace {

constexpr double kGrip = 6;
constexpr double kNotch = 120;

// Keeps the place in the middle of the view.
void SetRange(QScrollBar& bar, double size, double room) {
  const double middle = (bar.value() + bar.pageStep() / 2.0) / (bar.maximum() + bar.pageStep());
  const int page = static_cast<int>(room);
  bar.setPageStep(page);
  bar.setSingleStep(std::max(1, page / 20));
  bar.setRange(0, std::max(0, static_cast<int>(std::ceil(size)) - page));
  bar.setValue(static_cast<int>(middle * (bar.maximum() + page) - page / 2.0));
}

}  // namespace

ComparePane::ComparePane(QWidget* parent) : QAbstractScrollArea(parent) {
  viewport()->setMouseTracking(true);
  viewport()->setBackgroundRole(QPalette::Dark);
  setMinimumSize(200, 200);
}

void ComparePane::SetImages(const QImage& image, const QImage& under) {
  image_ = image;
  under_ = under;
  UpdateRanges();
}

void ComparePane::SetZoom(double zoom) {
  zoom_ = zoom;
  UpdateRanges();
}

void ComparePane::SetSplit(double share) {
  split_ = std::clamp(share, 0.0, 1.0);
  viewport()->update();
}

QSizeF ComparePane::Room() const {
  return QSizeF(viewport()->size()) * devicePixelRatioF();
}

double ComparePane::FittingZoom() const {
  if (image_.isNull()) return 1;
  const QSizeF room = QSizeF(maximumViewportSize()) * devicePixelRatioF();
  return std::min(room.width() / image_.width(), room.height() / image_.height());
}

QRectF ComparePane::Target() const {
  const QSizeF size = QSizeF(image_.size()) * zoom_;
  const QSizeF free = Room() - size;
  return {{free.width() > 0 ? std::floor(free.width() / 2) : -horizontalScrollBar()->value(),
           free.height() > 0 ? std::floor(free.height() / 2) : -verticalScrollBar()->value()},
          size};
}

void ComparePane::UpdateRanges() {
  SetRange(*horizontalScrollBar(), image_.width() * zoom_, Room().width());
  SetRange(*verticalScrollBar(), image_.height() * zoom_, Room().height());
  viewport()->update();
}

void ComparePane::resizeEvent(QResizeEvent*) {
  UpdateRanges();
}

double ComparePane::SplitPosition() const {
  return std::round(split_ * viewport()->width());
}

bool ComparePane::IsOnSplit(QPointF position) const {
  return !under_.isNull() && std::abs(position.x() - SplitPosition()) <= kGrip;
}

void ComparePane::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  const double ratio = devicePixelRatioF();
  const QRectF all(QPointF(0, 0), Room());
  const double split = under_.isNull() ? all.width() : SplitPosition() * ratio;
  painter.scale(1 / ratio, 1 / ratio);
  // Smaller than life the pixels are averaged; larger, each is to be seen.
  painter.setRenderHint(QPainter::SmoothPixmapTransform, zoom_ < 1);
  painter.setClipRect(QRectF(0, 0, split, all.height()));
  painter.drawImage(Target(), image_);
  if (under_.isNull()) return;
  painter.setClipRect(QRectF(split, 0, all.width() - split, all.height()));
  painter.drawImage(Target(), under_);

  painter.setClipping(false);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(QRectF(split - 1.5 * ratio, 0, 3 * ratio, all.height()), QColor(0, 0, 0, 190));
  painter.fillRect(QRectF(split - 0.5 * ratio, 0, ratio, all.height()), Qt::white);
  painter.setPen(QPen(QColor(0, 0, 0, 190), ratio));
  painter.setBrush(Qt::white);
  painter.drawEllipse(QPointF(split, all.height() / 2), kGrip * ratio, kGrip * ratio);
}

void ComparePane::mousePressEvent(QMouseEvent* event) {
  movesSplit_ = IsOnSplit(event->position());
  dragged_ = event->position();
}

// A drag moves the split where it began on it, else the image.
void ComparePane::mouseMoveEvent(QMouseEvent* event) {
  const QPointF position = event->position();
  if ((event->buttons() & Qt::LeftButton) != 0 && movesSplit_) {
    if (onSplit) onSplit(position.x() / viewport()->width());
  } else if ((event->buttons() & Qt::LeftButton) != 0) {
    const QPointF moved = (dragged_ - position) * devicePixelRatioF();
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() +
                                    static_cast<int>(std::lround(moved.x())));
    verticalScrollBar()->setValue(verticalScrollBar()->value() +
                                  static_cast<int>(std::lround(moved.y())));
    dragged_ = position;
  } else {
    viewport()->setCursor(IsOnSplit(position) ? Qt::SplitHCursor : Qt::CrossCursor);
  }
  const QPointF pixel = (position * devicePixelRatioF() - Target().topLeft()) / zoom_;
  const QPoint place(static_cast<int>(std::floor(pixel.x())),
                     static_cast<int>(std::floor(pixel.y())));
  if (onPoint) onPoint(image_.valid(place) ? std::optional(place) : std::nullopt);
}

void ComparePane::leaveEvent(QEvent*) {
  if (onPoint) onPoint(std::nullopt);
}

void ComparePane::wheelEvent(QWheelEvent* event) {
  if (!event->modifiers().testFlag(Qt::ControlModifier))
    return QAbstractScrollArea::wheelEvent(event);
  if (onZoom) onZoom(event->angleDelta().y() / kNotch);
  event->accept();
}

}  // namespace marovia
