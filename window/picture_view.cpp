#include <cmath>

#include "window/main_window.h"

namespace marovia {
namespace {

constexpr int kSide = 256;
// Around the picture: the focus frame, and what of an outline at the edge lies outside.
constexpr int kRim = 2;

// Bright lines of one coordinate over dark ones of three are seen on any ground.
void PaintLines(QPainter& painter, const QRegion& lines, const QColor& colour) {
  QRegion shade;
  for (const QRect& line : lines) shade += line.adjusted(-1, -1, 1, 1);
  for (const QRect& part : shade) painter.fillRect(part, QColor(0, 0, 0, 190));
  for (const QRect& line : lines) painter.fillRect(line, colour);
}

class PictureView : public QWidget {
 public:
  PictureView(Binds& binds, const PictureBox& picture, Binds::Handler open)
      : binds_(binds), picture_(picture), open_(std::move(open)) {
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    binds_.Add(this, picture_, [this] { ShowPicture(); });
  }

  [[nodiscard]] QSize minimumSizeHint() const override {
    const double factor = std::max(1.0, std::round(devicePixelRatioF()));
    const int side = static_cast<int>(std::ceil(kSide * factor / devicePixelRatioF())) + 2 * kRim;
    return {side, side};
  }

 protected:
  // In the picture's coordinates: the first is 1, and marks are as fine as its pixels.
  void paintEvent(QPaintEvent*) override {
    const QRect picture(1, 1, kSide, kSide);
    const auto [left, top, factor] = PlaceOfPicture(*this);
    const int rim = hasFocus() ? 2 : 1;
    QPainter painter(this);
    painter.scale(1 / devicePixelRatioF(), 1 / devicePixelRatioF());
    painter.translate(left - factor, top - factor);
    painter.scale(factor, factor);
    painter.fillRect(picture.adjusted(-rim, -rim, rim, rim),
                     palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid));
    picture_.raster.Empty() ? PaintPlaceholder(painter, picture)
                            : painter.drawImage(picture, ShownImage(picture_.raster));
    PaintMarks(painter);
  }

  void mousePressEvent(QMouseEvent* event) override { Tell(&frmMain::GraphBox_MouseDown, *event); }
  void mouseMoveEvent(QMouseEvent* event) override { Tell(&frmMain::GraphBox_MouseMove, *event); }
  void mouseReleaseEvent(QMouseEvent* event) override { Tell(&frmMain::GraphBox_MouseUp, *event); }
  void mouseDoubleClickEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton) return;
    if (draws_) binds_.Run([this] { binds_.Form().GraphBox_DblClick(); });
    open_();
  }

  void keyPressEvent(QKeyEvent* event) override {
    const auto key = PictureKeyOf(QKeySequence(event->key()).toString().toStdString());
    const bool longStep = event->modifiers().testFlag(Qt::ShiftModifier);
    bool used = false;
    if (draws_ && key) binds_.Run([&] { used = binds_.Form().GraphBox_KeyDown(*key, longStep); });
    if (used) return;
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return open_();
    QWidget::keyPressEvent(event);
  }

  void focusOutEvent(QFocusEvent* event) override {
    if (draws_) binds_.Run([this] { binds_.Form().GraphBox_LostFocus(); });
    QWidget::focusOutEvent(event);
  }

 private:
  void ShowPicture() {
    setCursor(draws_ && !picture_.raster.Empty() ? Qt::CrossCursor : Qt::ArrowCursor);
    if (const auto at = picture_.crosshair)
      setAccessibleDescription(QString("Crosshair at row %1, column %2").arg(at->row).arg(at->col));
    update();
  }

  void PaintPlaceholder(QPainter& painter, const QRect& picture) const {
    painter.fillRect(picture, palette().base());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(picture.adjusted(16, 16, -16, -16), Qt::AlignCenter | Qt::TextWordWrap,
                     Text(picture_.placeholder));
  }

  void PaintMarks(QPainter& painter) const {
    if (picture_.outline) {
      const auto& [corners, colour] = *picture_.outline;
      const QRect box = QRect::span({corners.col1, corners.row1}, {corners.col2, corners.row2});
      PaintLines(painter, QRegion(box) - box.adjusted(1, 1, -1, -1),
                 QColor(colour.red, colour.green, colour.blue));
    }
    if (const auto at = picture_.crosshair)
      PaintLines(painter, QRegion(1, at->row, kSide, 1) + QRect(at->col, 1, 1, kSide), Qt::white);
  }

  void Tell(void (frmMain::*handler)(std::int16_t, std::int16_t, float, float),
            const QMouseEvent& event) {
    if (!draws_) return;
    const Qt::MouseButtons pressed = event.button();
    const Qt::MouseButtons buttons = pressed ? pressed : event.buttons();
    const QPointF pixel = event.position() * devicePixelRatioF();
    const PicturePoint at = PlaceOfPicture(*this).CoordinateAt(pixel.x(), pixel.y());
    binds_.Run([&] {
      (binds_.Form().*handler)(static_cast<std::int16_t>(buttons.toInt()), 0,
                               static_cast<float>(at.col), static_cast<float>(at.row));
    });
  }

  Binds& binds_;
  const PictureBox& picture_;
  const bool draws_ = &picture_ == &binds_.Form().GraphBox;  // or only shows
  const Binds::Handler open_;
};

}  // namespace

QWidget* MakePicture(Binds& binds, const PictureBox& picture, const Binds::Handler& open) {
  return Make<PictureView>(binds, picture, open);
}

PicturePlace PlaceOfPicture(const QWidget& widget) {
  const QSize room = (QSizeF(widget.size()) * widget.devicePixelRatioF()).toSize();
  return PicturePlace::In(room.width(), room.height(), kRim);
}

}  // namespace marovia
