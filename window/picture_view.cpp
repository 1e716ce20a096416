#include "window/picture_view.h"

#include <algorithm>
#include <cmath>

namespace marovia {
namespace {

constexpr int kSide = 256;
// Around the picture: the focus frame, and what of an outline at the edge lies outside.
constexpr int kRim = 2;
const QMap<int, PictureKey> kKeys = {
    {Qt::Key_Left, PictureKey::kLeft},    {Qt::Key_Right, PictureKey::kRight},
    {Qt::Key_Up, PictureKey::kUp},        {Qt::Key_Down, PictureKey::kDown},
    {Qt::Key_Space, PictureKey::kCorner}, {Qt::Key_Return, PictureKey::kCorner},
    {Qt::Key_Enter, PictureKey::kCorner}, {Qt::Key_Escape, PictureKey::kGiveUp},
};

QRect Rect(const ScreenBox& box) {
  return {box.left, box.top, box.width, box.height};
}

// Bright lines over wider dark ones are seen on any ground.
void PaintLines(QPainter& painter, const QRegion& lines, int width, const QColor& colour) {
  QRegion shade;
  for (const QRect& line : lines) shade += line.adjusted(-width, -width, width, width);
  for (const QRect& part : shade) painter.fillRect(part, QColor(0, 0, 0, 190));
  for (const QRect& line : lines) painter.fillRect(line, colour);
}

class PictureView : public QWidget {
 public:
  PictureView(Binds& binds, const PictureBox& picture, const Binds::Handler& open,
              const QString& placeholder)
      : binds_(binds), picture_(picture), open_(open), placeholder_(placeholder) {
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    binds_.Add(this, picture_, [this] { ShowPicture(); });
  }

  [[nodiscard]] QSize minimumSizeHint() const override {
    const int side = static_cast<int>(std::ceil(kSide * Line() / devicePixelRatioF())) + 2 * kRim;
    return {side, side};
  }
  [[nodiscard]] QSize sizeHint() const override { return minimumSizeHint(); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.scale(1 / devicePixelRatioF(), 1 / devicePixelRatioF());
    const QRect area = Rect(PlaceOfPicture(*this).Whole());
    const int rim = hasFocus() ? 2 * Line() : Line();
    painter.fillRect(area.adjusted(-rim, -rim, rim, rim),
                     palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid));
    if (picture_.raster.Empty()) return PaintPlaceholder(painter, area);
    painter.drawImage(area, ShownImage(picture_.raster));
    PaintMarks(painter, area);
  }

  void mousePressEvent(QMouseEvent* event) override {
    Tell(&frmMain::GraphBox_MouseDown, event->button(), event->position());
  }
  void mouseMoveEvent(QMouseEvent* event) override {
    Tell(&frmMain::GraphBox_MouseMove, event->buttons(), event->position());
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    Tell(&frmMain::GraphBox_MouseUp, event->button(), event->position());
  }
  void mouseDoubleClickEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton) return;
    if (draws_) binds_.Run([this] { binds_.Form().GraphBox_DblClick(); });
    open_();
  }

  void keyPressEvent(QKeyEvent* event) override {
    const auto key = kKeys.find(event->key());
    const bool longStep = event->modifiers().testFlag(Qt::ShiftModifier);
    bool used = false;
    if (draws_ && key != kKeys.end())
      binds_.Run([&] { used = binds_.Form().GraphBox_KeyDown(*key, longStep); });
    if (used) return;
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return open_();
    QWidget::keyPressEvent(event);
  }

  void focusOutEvent(QFocusEvent* event) override {
    if (draws_) binds_.Run([this] { binds_.Form().GraphBox_LostFocus(); });
    QWidget::focusOutEvent(event);
  }

 private:
  // Screen pixels that a line is wide.
  [[nodiscard]] int Line() const {
    return std::max(1, static_cast<int>(std::lround(devicePixelRatioF())));
  }

  void ShowPicture() {
    setCursor(draws_ && !picture_.raster.Empty() ? Qt::CrossCursor : Qt::ArrowCursor);
    if (const auto at = picture_.crosshair)
      setAccessibleDescription(QString("Crosshair at row %1, column %2").arg(at->row).arg(at->col));
    update();
  }

  void PaintPlaceholder(QPainter& painter, const QRect& area) const {
    painter.fillRect(area, palette().base());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    const QRect room = painter.transform().mapRect(area);
    painter.resetTransform();
    painter.drawText(room.adjusted(16, 16, -16, -16), Qt::AlignCenter | Qt::TextWordWrap,
                     placeholder_);
  }

  void PaintMarks(QPainter& painter, const QRect& area) const {
    const PicturePlace place = PlaceOfPicture(*this);
    const int line = Line();
    if (picture_.outline) {
      const auto& [corners, colour] = *picture_.outline;
      const QRect box =
          Rect(place.Span({corners.row1, corners.col1}, {corners.row2, corners.col2}));
      PaintLines(painter, QRegion(box) - box.adjusted(line, line, -line, -line), line,
                 QColor(colour.red, colour.green, colour.blue));
    }
    if (const auto at = picture_.crosshair) {
      const QPoint middle = Rect(place.Span(*at, *at)).center();
      const QRegion across(area.left(), middle.y(), area.width(), line);
      const QRect down(middle.x(), area.top(), line, area.height());
      PaintLines(painter, across + down, line, Qt::white);
    }
  }

  void Tell(void (frmMain::*handler)(std::int16_t, std::int16_t, float, float),
            Qt::MouseButtons buttons, QPointF position) {
    if (!draws_) return;
    const QPointF pixel = position * devicePixelRatioF();
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
  const QString placeholder_;
};

}  // namespace

QImage ShownImage(const Image& image) {
  if (image.Empty()) return {};
  return {image.Samples().data(), image.Cols(), image.Rows(), image.Cols(),
          QImage::Format_Grayscale8};
}

QWidget* MakePicture(Binds& binds, const PictureBox& picture, const Binds::Handler& open,
                     const QString& placeholder) {
  return Make<PictureView>(binds, picture, open, placeholder);
}

PicturePlace PlaceOfPicture(const QWidget& widget) {
  const QSize room = (QSizeF(widget.size()) * widget.devicePixelRatioF()).toSize();
  return PicturePlace::In(room.width(), room.height(), kRim);
}

}  // namespace marovia
