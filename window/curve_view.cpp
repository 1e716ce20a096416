#include "window/curve_view.h"

#include <cmath>

#include "window/make.h"

namespace marovia {
namespace {

// Where the pictures are the same; above all that a curve shows.
constexpr double kMostDecibels = 60;

double Shown(const std::optional<float>& psnr) {
  return std::min(kMostDecibels, psnr ? double{*psnr} : kMostDecibels);
}

QString KindText(FileKind kind) {
  return Text(Extension(kind));
}

}  // namespace

CurveView::CurveView(const Session& session) : session_(session) {
  setObjectName("Curve");
  setAccessibleName(tr("Quality against bytes"));
  setToolTip(tr("PSNR against bits per pixel; click to set the rate"));
  setCursor(Qt::PointingHandCursor);
  setMinimumHeight(150);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QRectF CurveView::Area() const {
  const double letter = fontMetrics().height();
  return QRectF(rect()).adjusted(2 * letter, letter / 2, -letter / 2, -1.4 * letter);
}

// Whole steps around all points.
CurveView::Axis CurveView::Decibels() const {
  double low = kMostDecibels, high = 0;
  for (const KindCurve& curve : session_.Curves()) {
    for (const auto& [bytes, psnr] : curve.psnrOfBytes) {
      low = std::min(low, Shown(psnr));
      high = std::max(high, Shown(psnr));
    }
  }
  if (low > high) return {20, 50, 10};
  const double step = high - low > 25 ? 10 : 5;
  return {std::floor(low / step) * step,
          std::max(std::ceil(high / step), std::floor(low / step) + 1) * step, step};
}

QPointF CurveView::Place(std::int64_t bytes, double psnr, const Axis& axis) const {
  const QRectF area = Area();
  return {area.left() + session_.Scale().PartOf(bytes) * area.width(),
          area.bottom() - (psnr - axis.low) / (axis.high - axis.low) * area.height()};
}

void CurveView::Tell(const QMouseEvent& event) {
  if (!event.buttons().testFlag(Qt::LeftButton) || session_.Curves().empty()) return;
  const double part = (event.position().x() - Area().left()) / Area().width();
  onBytes(session_.Scale().BytesAt(std::clamp(part, 0.0, 1.0)));
}

void CurveView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(rect(), palette().base());
  if (session_.Curves().empty()) return;
  const Axis axis = Decibels();
  PaintGrid(painter, axis);
  const auto& curves = session_.Curves();
  for (std::size_t i = curves.size(); i-- > 1;) {
    QColor pale = palette().color(QPalette::Text);
    pale.setAlpha(90);
    PaintCurve(painter, curves[i], pale, 1, axis);
  }
  PaintCurve(painter, curves.front(), palette().color(QPalette::Highlight), 2, axis);
  PaintMark(painter, axis);
  PaintLegend(painter);
}

void CurveView::PaintGrid(QPainter& painter, const Axis& axis) const {
  const QRectF area = Area();
  QColor line = palette().color(QPalette::Text);
  const QColor text = line;
  line.setAlpha(36);
  const double letter = fontMetrics().height();
  const auto lines = static_cast<int>((axis.high - axis.low) / axis.step) + 1;
  for (int i = 0; i < lines; ++i) {
    const double psnr = axis.low + i * axis.step;
    const double y = Place(session_.Scale().most, psnr, axis).y();
    painter.setPen(line);
    painter.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
    painter.setPen(text);
    const double raised = psnr == axis.low ? letter / 2 : 0;  // above the other axis
    painter.drawText(QRectF(0, y - letter - raised, area.left() - 4, 2 * letter),
                     Qt::AlignRight | Qt::AlignVCenter, QString::number(psnr));
  }
  for (const double rate : {0.01, 0.03, 0.1, 0.3, 1.0, 3.0, 10.0}) {
    const std::int64_t bytes = session_.Scale().BytesOfRate(rate);
    if (std::abs(session_.Scale().RateOf(bytes) / rate - 1) > 0.05) continue;
    const double x = Place(bytes, axis.low, axis).x();
    painter.setPen(line);
    painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
    painter.setPen(text);
    painter.drawText(QRectF(x - 40, area.bottom() + 2, 80, letter), Qt::AlignHCenter,
                     QString::number(rate));
  }
  painter.drawText(area.adjusted(4, 0, -4, -2), Qt::AlignRight | Qt::AlignBottom,
                   tr("dB over bits per pixel"));
}

void CurveView::PaintCurve(QPainter& painter, const KindCurve& curve, const QColor& colour,
                           int width, const Axis& axis) const {
  QPolygonF line;
  for (const auto& [bytes, psnr] : curve.psnrOfBytes) line << Place(bytes, Shown(psnr), axis);
  painter.setPen(QPen(colour, width));
  painter.setBrush(Qt::NoBrush);
  painter.drawPolyline(line);
  painter.setBrush(colour);
  for (const QPointF& point : line) painter.drawEllipse(point, width, width);
}

// A line at the length asked for, a spot at what its picture is worth.
void CurveView::PaintMark(QPainter& painter, const Axis& axis) const {
  const double x = Place(session_.Asked(), axis.low, axis).x();
  painter.setPen(QPen(palette().color(QPalette::Text), 1, Qt::DashLine));
  painter.drawLine(QPointF(x, Area().top()), QPointF(x, Area().bottom()));
  const auto& measures = session_.TheSight().look.measures;
  if (!measures || !session_.IsUpToDate()) return;
  painter.setPen(QPen(palette().color(QPalette::Base), 1.5));
  painter.setBrush(palette().color(QPalette::Text));
  painter.drawEllipse(QPointF(x, Place(0, Shown(measures->psnr), axis).y()), 5, 5);
}

// How far the other kinds are off at this length.
void CurveView::PaintLegend(QPainter& painter) const {
  const auto& curves = session_.Curves();
  const auto own = curves.front().PsnrAt(session_.Asked());
  QString text = KindText(curves.front().kind);
  for (std::size_t i = 1; i < curves.size(); ++i) {
    const auto other = curves[i].PsnrAt(session_.Asked());
    text += "\n" + KindText(curves[i].kind);
    if (own && other)
      text += tr("  %1%2 dB").arg(*other < *own ? "" : "+").arg(*other - *own, 0, 'f', 2);
  }
  painter.setPen(palette().color(QPalette::Text));
  painter.drawText(Area().adjusted(6, 2, 0, 0), Qt::AlignLeft | Qt::AlignTop, text);
}

}  // namespace marovia
