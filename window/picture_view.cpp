#include <QAccessibleWidget>

#include "app/viewing.h"
#include "window/main_window.h"

namespace marovia {
namespace {

class PictureView : public QWidget {
 public:
  PictureView(Binds& binds, const PictureBox& picture)
      : binds_(binds), form_(binds.Form()), picture_(picture) {
    setFocusPolicy(Qt::StrongFocus);
    setAutoFillBackground(true);  // so that nothing behind it is painted with it
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    binds_.Add(this, picture_, [this] { ShowPicture(); });
  }

  [[nodiscard]] QSize sizeHint() const override {
    return QSize(1, 1) * PicturePlace::GoodRoom(devicePixelRatioF());
  }
  [[nodiscard]] QSize minimumSizeHint() const override {
    return QSize(1, 1) * PicturePlace::LeastRoom(devicePixelRatioF());
  }

 protected:
  // In the picture's coordinates: the first is 1, and marks are as fine as its pixels.
  void paintEvent(QPaintEvent*) override {
    const QRect picture(1, 1, kPictureSide, kPictureSide);
    const auto [left, top, factor] = PlaceOfPicture(*this);
    const int rim = hasFocus() ? 2 : 1;
    QPainter painter(this);
    painter.scale(1 / devicePixelRatioF(), 1 / devicePixelRatioF());
    painter.translate(left - factor, top - factor);
    painter.scale(factor, factor);
    painter.fillRect(picture.adjusted(-rim, -rim, rim, rim),
                     palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid));
    picture_.raster.Empty() ? painter.fillRect(picture, palette().base())
                            : painter.drawImage(picture, ShownImage(picture_.raster));
    for (const PictureMark& mark : MarksOver(picture_))
      painter.fillRect(mark.col, mark.row, mark.cols, mark.rows, QColor::fromRgba(mark.argb));
    if (picture_.raster.Empty()) PaintPlaceholder(painter, painter.transform().mapRect(picture));
  }

  void mousePressEvent(QMouseEvent* event) override { Tell(&frmMain::GraphBox_MouseDown, *event); }
  void mouseMoveEvent(QMouseEvent* event) override { Tell(&frmMain::GraphBox_MouseMove, *event); }
  void mouseReleaseEvent(QMouseEvent* event) override { Tell(&frmMain::GraphBox_MouseUp, *event); }
  void mouseDoubleClickEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton) return;
    binds_.Run([this] { form_.Picture_DblClick(picture_); });
  }

  void keyPressEvent(QKeyEvent* event) override {
    const std::string key = QKeySequence(event->key()).toString().toStdString();
    const bool longStep = event->modifiers().testFlag(Qt::ShiftModifier);
    bool used = false;
    binds_.Run([&] { used = form_.Picture_KeyDown(picture_, key, longStep); });
    if (!used) QWidget::keyPressEvent(event);
  }

  void focusOutEvent(QFocusEvent* event) override {
    binds_.Run([this] { form_.GraphBox_LostFocus(); });
    QWidget::focusOutEvent(event);
  }

 private:
  // Painting takes far longer than to see that nothing has changed.
  void ShowPicture() {
    if (shown_ == picture_) return;
    shown_ = picture_;
    setCursor(picture_.drawnOn && !picture_.raster.Empty() ? Qt::CrossCursor : Qt::ArrowCursor);
    setAccessibleDescription(Text(picture_.Description()));
    update();
  }

  // In letters of the usual size, whatever that of the picture.
  void PaintPlaceholder(QPainter& painter, const QRect& picture) const {
    painter.resetTransform();
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(picture.adjusted(8, 8, -8, -8), Qt::AlignCenter | Qt::TextWordWrap,
                     Text(picture_.placeholder));
  }

  void Tell(frmMain::MouseHandler handler, const QMouseEvent& event) {
    const Qt::MouseButtons pressed = event.button();
    const Qt::MouseButtons buttons = pressed ? pressed : event.buttons();
    const QPointF pixel = event.position() * devicePixelRatioF();
    const PicturePoint at = PlaceOfPicture(*this).CoordinateAt(pixel.x(), pixel.y());
    binds_.Run([&] { form_.Picture_Mouse(picture_, handler, buttons.toInt(), at); });
  }

  Binds& binds_;
  frmMain& form_;
  const PictureBox& picture_;
  PictureBox shown_ = picture_;
};

// To who hears the form, a picture is one.
QAccessibleInterface* AccessiblePicture(const QString&, QObject* object) {
  auto* view = dynamic_cast<PictureView*>(object);
  return view == nullptr ? nullptr : Make<QAccessibleWidget>(view, QAccessible::Graphic);
}

}  // namespace

QWidget* MakePicture(Binds& binds, const PictureBox& picture) {
  QAccessible::installFactory(AccessiblePicture);
  return Make<PictureView>(binds, picture);
}

PicturePlace PlaceOfPicture(const QWidget& widget) {
  return PicturePlace::In(widget.width(), widget.height(), widget.devicePixelRatioF());
}

}  // namespace marovia
