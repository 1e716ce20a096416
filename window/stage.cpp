#include "window/stage.h"

#include <array>
#include <cmath>

#include "window/make.h"

namespace marovia {
namespace {

constexpr double kReach = 7;  // of a handle or the split, in units of the screen
constexpr int kGap = 2;       // between two panes

// From no difference to a large one, dark to bright to those who see no colours, too.
const QList<QRgb>& HeatColours() {
  static const QList<QRgb> colours = [] {
    constexpr std::array<std::array<int, 3>, 6> kAnchors = {
        {{0, 0, 8}, {66, 10, 104}, {147, 38, 103}, {221, 81, 58}, {252, 165, 10}, {252, 255, 164}}};
    QList<QRgb> made;
    for (int i = 0; i < 256; ++i) {
      const double place = i * static_cast<int>(kAnchors.size() - 1) / 255.0;
      const auto low = std::min(static_cast<std::size_t>(place), kAnchors.size() - 2);
      const auto mixed = [&](std::size_t k) {
        return static_cast<int>(std::lround(std::lerp(
            kAnchors.at(low).at(k), kAnchors.at(low + 1).at(k), place - static_cast<double>(low))));
      };
      made.push_back(qRgb(mixed(0), mixed(1), mixed(2)));
    }
    return made;
  }();
  return colours;
}

bool Covers(const Image& image, Spot place) {
  return place.x >= 0 && place.y >= 0 && place.x < image.Cols() && place.y < image.Rows();
}

int SampleAt(const Image& image, Spot place) {
  return image(static_cast<int>(place.y), static_cast<int>(place.x));
}

}  // namespace

Stage::Stage() {
  setObjectName("Stage");
  setAccessibleName(tr("Picture"));
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setMinimumSize(240, 200);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void Stage::SetSource(const Pyramid& source) {
  source_ = source;
  picture_ = layer_ = {};
  SetPanes();
}

void Stage::SetPicture(const Pyramid& picture, const Pyramid& layer, const QString& caption) {
  picture_ = picture;
  layer_ = layer;
  caption_ = caption;
  setAccessibleDescription(caption);
  SetPanes();
}

void Stage::SetView(View view) {
  mode_ = view;
  SetPanes();
}

void Stage::SetRegion(const std::optional<Region>& region) {
  region_ = region;
  update();
}

void Stage::SetDrawing(bool drawing) {
  drawing_ = drawing;
  ShowCursor(mapFromGlobal(QCursor::pos()));
}

void Stage::ZoomTo(double scale) {
  view_.ZoomTo(scale, view_.Middle());
  Changed();
}

void Stage::Fit() {
  view_.Fit();
  Changed();
}

void Stage::Changed() {
  update();
  onZoom();
  if (underMouse()) ReadOut(mapFromGlobal(QCursor::pos()));
}

void Stage::SetPanes() {
  const QSizeF pane = Pane(0).size();
  view_.SetPane({pane.width(), pane.height()});
  if (!Any().Empty()) {
    const Image& image = Any().Whole();
    view_.SetImage({static_cast<double>(image.Cols()), static_cast<double>(image.Rows())});
  }
  Changed();
}

QRectF Stage::Pane(int index) const {
  const QSizeF all = QSizeF(size()) * devicePixelRatioF();
  if (mode_ != View::kSideBySide) return {QPointF(), all};
  const double width = std::floor((all.width() - kGap) / 2);
  return {index * (width + kGap), 0, width, all.height()};
}

Spot Stage::InPane(QPointF place) const {
  const QPointF pixel = place * devicePixelRatioF();
  const QRectF second = Pane(1);
  const bool inSecond = mode_ == View::kSideBySide && pixel.x() >= second.left();
  return {pixel.x() - (inSecond ? second.left() : 0), pixel.y()};
}

double Stage::SplitX() const {
  return std::round(Pane(0).width() * split_);
}

void Stage::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Window).darker(112));
  if (Any().Empty()) {
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect().adjusted(40, 40, -40, -40), Qt::AlignCenter | Qt::TextWordWrap,
                     tr("Open, drop or paste an image, or a compressed file.\n\n"
                        "The slider below then sets how many bytes it may have."));
    return;
  }
  painter.scale(1 / devicePixelRatioF(), 1 / devicePixelRatioF());
  const bool canCompare = !source_.Empty() && !picture_.Empty();
  const QString sourceCaption = tr("Source");
  QRectF pane = Pane(0);
  if (peeking_ || picture_.Empty()) {
    PaintPane(painter, pane, source_.Empty() ? picture_ : source_, false);
    PaintCaption(painter, pane, sourceCaption);
  } else if (canCompare && mode_ == View::kSideBySide) {
    PaintPane(painter, pane, source_, false);
    PaintCaption(painter, pane, sourceCaption);
    PaintRegion(painter, pane);
    pane = Pane(1);
    PaintPane(painter, pane, picture_, false);
    PaintCaption(painter, pane, caption_);
  } else if (canCompare && mode_ == View::kWipe) {
    const QRectF left(0, 0, SplitX(), pane.height());
    const QRectF right = pane.adjusted(SplitX(), 0, 0, 0);
    PaintPane(painter, right, picture_, false);
    PaintPane(painter, left, source_, false);
    PaintCaption(painter, left, sourceCaption);
    PaintCaption(painter, right, caption_);
    painter.fillRect(QRectF(SplitX() - 2, 0, 4, pane.height()), Qt::black);
    painter.fillRect(QRectF(SplitX() - 1, 0, 2, pane.height()), Qt::white);
  } else {
    const bool layered = !layer_.Empty() && mode_ >= View::kDifference;
    PaintPane(painter, pane, layered ? layer_ : picture_, layered && mode_ == View::kHeat);
    PaintCaption(painter, pane, caption_);
  }
  PaintRegion(painter, pane);
  if (hasFocus()) {
    painter.setPen(QPen(palette().color(QPalette::Highlight), devicePixelRatioF()));
    painter.drawRect(
        QRectF(QPointF(), QSizeF(size()) * devicePixelRatioF()).adjusted(0, 0, -1, -1));
  }
}

// What lies in view of one of the reductions, nearest pixels where it is enlarged.
void Stage::PaintPane(QPainter& painter, const QRectF& pane, const Pyramid& image,
                      bool heat) const {
  const Image& whole = image.Whole();
  const Image& step = image.ForScale(view_.Scale());
  const double right = static_cast<double>(step.Cols()) / whole.Cols();
  const double down = static_cast<double>(step.Rows()) / whole.Rows();
  QImage shown = ShownImage(step);
  if (heat) {
    shown = QImage(shown.constBits(), shown.width(), shown.height(), shown.bytesPerLine(),
                   QImage::Format_Indexed8);
    shown.setColorTable(HeatColours());
  }
  const double origin = mode_ == View::kSideBySide ? pane.left() : 0;
  const Spot first = view_.ToImage({std::max(0.0, pane.left() - origin), 0});
  const Spot last = view_.ToImage({pane.right() - origin, pane.height()});
  const QRectF part =
      QRectF(QPointF(std::floor(first.x * right) - 1, std::floor(first.y * down) - 1),
             QPointF(std::ceil(last.x * right) + 1, std::ceil(last.y * down) + 1)) &
      QRectF(shown.rect());
  const Spot from = view_.ToPane({part.left() / right, part.top() / down});
  const Spot to = view_.ToPane({part.right() / right, part.bottom() / down});
  painter.save();
  painter.setClipRect(pane);
  painter.setRenderHint(QPainter::SmoothPixmapTransform, view_.Scale() < 1);
  painter.drawImage(QRectF(QPointF(origin + from.x, from.y), QPointF(origin + to.x, to.y)), shown,
                    part);
  painter.restore();
}

void Stage::PaintCaption(QPainter& painter, const QRectF& pane, const QString& text) const {
  if (text.isEmpty()) return;
  painter.save();
  painter.setClipRect(pane);
  painter.translate(pane.topLeft());
  painter.scale(devicePixelRatioF(), devicePixelRatioF());
  const QRectF box = QRectF(fontMetrics().boundingRect(text)).adjusted(-8, -4, 8, 4);
  painter.translate(8 - box.left(), 8 - box.top());
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0, 0, 0, 170));
  painter.drawRoundedRect(box, 5, 5);
  painter.setPen(Qt::white);
  painter.drawText(QPointF(), text);
  painter.restore();
}

void Stage::PaintRegion(QPainter& painter, const QRectF& pane) const {
  if (!region_) return;
  const double origin = mode_ == View::kSideBySide ? pane.left() : 0;
  const Spot from = view_.ToPane({double(region_->col1), double(region_->row1)});
  const Spot to = view_.ToPane({region_->col2 + 1.0, region_->row2 + 1.0});
  const QRectF box(QPointF(origin + from.x, from.y), QPointF(origin + to.x, to.y));
  painter.save();
  painter.setClipRect(pane);
  painter.setBrush(Qt::NoBrush);
  for (const auto& [colour, width] : {std::pair(Qt::black, 3), std::pair(Qt::yellow, 1)}) {
    painter.setPen(
        QPen(colour, width * devicePixelRatioF(), Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(box);
  }
  painter.setPen(QPen(Qt::black, devicePixelRatioF()));
  painter.setBrush(Qt::yellow);
  const double side = 7 * devicePixelRatioF();
  for (const double x : {box.left(), box.center().x(), box.right()}) {
    for (const double y : {box.top(), box.center().y(), box.bottom()}) {
      if (QPointF(x, y) != box.center())
        painter.drawRect(QRectF(x - side / 2, y - side / 2, side, side));
    }
  }
  painter.restore();
}

void Stage::resizeEvent(QResizeEvent*) {
  SetPanes();
}

void Stage::wheelEvent(QWheelEvent* event) {
  constexpr double kDoubling = 240;  // eighths of a degree: two notches
  view_.ZoomBy(std::exp2(event->angleDelta().y() / kDoubling), InPane(event->position()));
  Changed();
}

std::optional<Grip> Stage::GripUnder(QPointF place) const {
  if (!region_) return std::nullopt;
  const double reach = kReach * devicePixelRatioF() / view_.Scale();
  const auto grip = GripAt(*region_, view_.ToImage(InPane(place)), reach);
  return grip && grip->MovesAll() && !drawing_ ? std::nullopt : grip;
}

void Stage::mousePressEvent(QMouseEvent* event) {
  if (Any().Empty()) return;
  const QPointF place = event->position();
  pressed_ = last_ = place;
  before_ = region_;
  grip_ = GripUnder(place);
  const bool left = event->button() == Qt::LeftButton;
  const bool onSplit = mode_ == View::kWipe && std::abs(place.x() * devicePixelRatioF() -
                                                        SplitX()) <= kReach * devicePixelRatioF();
  drag_ = !left               ? Drag::kPan
          : onSplit           ? Drag::kWipe
          : grip_ || drawing_ ? Drag::kRegion
                              : Drag::kPan;
  ShowCursor(place);
}

void Stage::mouseMoveEvent(QMouseEvent* event) {
  const QPointF place = event->position();
  const QPointF by = (place - last_) * devicePixelRatioF();
  last_ = place;
  if (drag_ == Drag::kPan) MoveBy({by.x(), by.y()});
  if (drag_ == Drag::kWipe) split_ = std::clamp(place.x() / width(), 0.0, 1.0);
  if (drag_ == Drag::kRegion) {
    const auto [rows, cols] = std::pair(Any().Whole().Rows(), Any().Whole().Cols());
    const Spot from = view_.ToImage(InPane(pressed_));
    const Spot to = view_.ToImage(InPane(place));
    region_ = grip_ ? Dragged(*before_, *grip_, {to.x - from.x, to.y - from.y}, rows, cols)
                    : RegionBetween(from, to, rows, cols);
    onRegion(*region_, false);
  }
  if (drag_ != Drag::kNone) update();
  ShowCursor(place);
  ReadOut(place);
}

void Stage::mouseReleaseEvent(QMouseEvent* event) {
  const bool drawn = drag_ == Drag::kRegion && event->position() != pressed_;
  drag_ = Drag::kNone;
  if (drawn) onRegion(*region_, true);
  ShowCursor(event->position());
}

void Stage::mouseDoubleClickEvent(QMouseEvent* event) {
  view_.Fits() ? view_.ZoomTo(1, InPane(event->position())) : view_.Fit();
  Changed();
}

void Stage::leaveEvent(QEvent*) {
  onReadout({});
}

void Stage::MoveBy(Spot by) {
  view_.PanBy(by.x, by.y);
  Changed();
}

// Arrows move what is in view, or the region while one is drawn; Space shows the source.
void Stage::keyPressEvent(QKeyEvent* event) {
  const double step = event->modifiers().testFlag(Qt::ShiftModifier) ? 64 : 8;
  const int key = event->key();
  const Spot by{step * ((key == Qt::Key_Right) - (key == Qt::Key_Left)),
                step * ((key == Qt::Key_Down) - (key == Qt::Key_Up))};
  if (key == Qt::Key_Space) {
    peeking_ = true;
    update();
  } else if (by.x == 0 && by.y == 0) {
    QWidget::keyPressEvent(event);
  } else if (mode_ == View::kWipe && event->modifiers().testFlag(Qt::ControlModifier)) {
    split_ = std::clamp(split_ + by.x / 400, 0.0, 1.0);
    update();
  } else if (drawing_ && region_) {
    const Image& image = Any().Whole();
    region_ = Dragged(*region_, {true, true, true, true}, by, image.Rows(), image.Cols());
    onRegion(*region_, true);
  } else {
    MoveBy({-by.x * devicePixelRatioF() * 4, -by.y * devicePixelRatioF() * 4});
  }
}

void Stage::keyReleaseEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Space || event->isAutoRepeat()) return;
  peeking_ = false;
  update();
}

void Stage::ShowCursor(QPointF place) {
  const auto grip = drag_ == Drag::kRegion ? grip_ : GripUnder(place);
  const bool onSplit =
      mode_ == View::kWipe && drag_ != Drag::kPan &&
      std::abs(place.x() * devicePixelRatioF() - SplitX()) <= kReach * devicePixelRatioF();
  if (onSplit) return setCursor(Qt::SplitHCursor);
  if (drag_ == Drag::kPan) return setCursor(Qt::ClosedHandCursor);
  if (!grip) return setCursor(drawing_ ? Qt::CrossCursor : Qt::OpenHandCursor);
  if (grip->MovesAll()) return setCursor(Qt::SizeAllCursor);
  const bool sideways = grip->left || grip->right;
  if (sideways && (grip->top || grip->bottom))
    return setCursor(grip->left == grip->top ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor);
  setCursor(sideways ? Qt::SizeHorCursor : Qt::SizeVerCursor);
}

void Stage::ReadOut(QPointF place) {
  if (Any().Empty()) return;
  const Spot at = view_.ToImage(InPane(place));
  if (!Covers(Any().Whole(), at)) return onReadout({});
  QString text = tr("Row %1, column %2").arg(int(at.y)).arg(int(at.x));
  if (!source_.Empty()) text += tr("   source %1").arg(SampleAt(source_.Whole(), at));
  if (!picture_.Empty()) text += tr("   picture %1").arg(SampleAt(picture_.Whole(), at));
  if (!source_.Empty() && !picture_.Empty()) {
    text +=
        tr("   difference %1").arg(SampleAt(picture_.Whole(), at) - SampleAt(source_.Whole(), at));
  }
  onReadout(text);
}

}  // namespace marovia
