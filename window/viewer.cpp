#include <cmath>

#include "app/viewing.h"
#include "window/tool_window.h"

namespace marovia {
namespace {

constexpr int kTall = 1 << 20;  // above any zoomed image

// Each image is a rectangle of its scene, a pixel a unit, painted with its pixels.
class Viewer : public ToolWindow {
 public:
  Viewer(Comparison images, QWidget* parent)
      : ToolWindow("Viewer", "Full Resolution - Marovia", {images.HasTwo() ? 1120 : 680, 680},
                   parent),
        images_(std::move(images)) {
    setAttribute(Qt::WA_DeleteOnClose);
    AddTool("Zoom Out", QKeySequence::ZoomOut, [this] { SetZoom(zoom_.Times(0.5)); });
    bar_->addWidget(zoomLabel_);
    AddTool("Zoom In", QKeySequence::ZoomIn, [this] { SetZoom(zoom_.Times(2)); });
    AddTool("Full Size", Qt::CTRL | Qt::Key_1, [this] { SetZoom(Zoom(1)); });
    AddTool("Fit", Qt::CTRL | Qt::Key_0, [this] { Fit(); });
    zoomLabel_->setObjectName("ZoomLabel");
    zoomLabel_->setMinimumWidth(fontMetrics().horizontalAdvance("  3200 %  "));
    zoomLabel_->setAlignment(Qt::AlignCenter);
    readout_->setObjectName("Readout");
    readout_->setContentsMargins(kMargin, 0, 0, 0);
    statusBar()->addWidget(readout_);
    auto* caption = Make<QLabel>(Text(images_.Caption()));
    first_ = NewPane("Wipe", images_.Shown());
    setCentralWidget(images_.HasTwo() ? WithDifference(caption) : Column({caption, first_}));
    centralWidget()->setContentsMargins(kMargin, kMargin, kMargin, 0);
    ReadOut({-1, -1});
    SetZoom(Zoom(std::round(devicePixelRatioF())));
  }

 protected:
  // Of the viewports of the panes.
  bool eventFilter(QObject* viewport, QEvent* event) override {
    if (event->type() == QEvent::Leave) ReadOut({-1, -1});
    if (event->type() == QEvent::Resize)
      QMetaObject::invokeMethod(this, &Viewer::Wipe, Qt::QueuedConnection);
    if (const auto* mouse = dynamic_cast<QMouseEvent*>(event)) {
      ReadOut(first_->mapToScene(mouse->pos()));
      if (viewport != first_->viewport() || split_ == nullptr) return false;
      if (mouse->buttons() == Qt::LeftButton)
        split_->setValue(mouse->pos().x() * split_->maximum() / first_->viewport()->width());
    }
    const auto* wheel = dynamic_cast<QWheelEvent*>(event);
    if (wheel == nullptr || !wheel->modifiers().testFlag(Qt::ControlModifier)) return false;
    SetZoom(zoom_.Turned(wheel->angleDelta().y()));
    return true;
  }

 private:
  QGraphicsView* NewPane(const QString& name, const Image& image) {
    auto* pane = Make<QGraphicsView>(Make<QGraphicsScene>(0, 0, image.Cols(), image.Rows(), this));
    pane->setObjectName(name);
    pane->setAccessibleName(name);
    pane->setBackgroundBrush(palette().dark());
    pane->setInteractive(false);
    pane->setDragMode(QGraphicsView::ScrollHandDrag);
    pane->setMinimumSize(200, 200);
    pane->viewport()->setMouseTracking(true);
    pane->viewport()->installEventFilter(this);
    pane->scene()->addRect(pane->sceneRect(), Qt::NoPen, ShownImage(image));
    return pane;
  }

  // The panes are of one size, so that the scroll bars of each fit the other.
  QWidget* WithDifference(QWidget* caption) {
    auto* second = NewPane("Difference", images_.Source());
    for (const auto bar :
         {&QGraphicsView::horizontalScrollBar, &QGraphicsView::verticalScrollBar}) {
      QScrollBar* one = (first_->*bar)();
      QScrollBar* other = (second->*bar)();
      connect(one, &QScrollBar::valueChanged, other, &QScrollBar::setValue);
      connect(other, &QScrollBar::valueChanged, one, &QScrollBar::setValue);
      connect(one, &QScrollBar::valueChanged, this, &Viewer::Wipe);
    }
    AddWipe();
    auto* gain = AddField<QSpinBox>("Gain", "Difference gain:", " Difference gain: ");
    gain->setRange(1, 32);
    gain->setPrefix("x ");
    connect(gain, &QSpinBox::valueChanged, second, [this, second](int value) {
      difference_ = images_.Difference(value);
      second->scene()->clear();
      second->scene()->addRect(second->sceneRect(), Qt::NoPen, ShownImage(difference_));
    });
    gain->setValue(4);
    return Columns(2, {caption, first_, Make<QLabel>("Difference: mid-grey is zero"), second});
  }

  // A drag anywhere in the first pane moves its split; in the other one it moves both images.
  void AddWipe() {
    first_->setDragMode(QGraphicsView::NoDrag);
    first_->viewport()->setCursor(Qt::SplitHCursor);
    under_ = first_->scene()->addRect({}, Qt::NoPen, ShownImage(images_.Reconstruction()));
    line_ = first_->scene()->addRect(-1.5, -kTall, 3, 2 * kTall, QPen(Qt::black), Qt::white);
    line_->setFlag(QGraphicsItem::ItemIgnoresTransformations);
    split_ = AddField<QSlider>("Split", "Wipe:", " Wipe: ");
    split_->setRange(0, 100);
    split_->setOrientation(Qt::Horizontal);
    split_->setMaximumWidth(160);
    connect(split_, &QSlider::valueChanged, this, &Viewer::Wipe);
    split_->setValue(50);
  }

  // The split is where the slider is, from the left edge of the view to its right edge.
  void Wipe() {
    if (split_ == nullptr) return;
    const int x = split_->value() * first_->viewport()->width() / split_->maximum();
    const QRectF all = first_->sceneRect();
    const double column = std::clamp(std::round(first_->mapToScene(x, 0).x()), 0.0, all.width());
    under_->setRect(all.adjusted(column, 0, 0, 0));
    line_->setX(column);
  }

  void Fit() {
    first_->fitInView(first_->sceneRect(), Qt::KeepAspectRatio);
    SetZoom(Zoom(first_->transform().m11() * devicePixelRatioF()));
  }

  // What is in the middle stays there.
  void SetZoom(Zoom zoom) {
    zoom_ = zoom;
    const double scale = zoom_.Factor() / devicePixelRatioF();
    for (auto* pane : findChildren<QGraphicsView*>()) {
      pane->setTransform(QTransform::fromScale(scale, scale));
      pane->setRenderHint(QPainter::SmoothPixmapTransform, zoom_.Factor() < 1);
    }
    zoomLabel_->setText(Text(zoom_.Text()));
    Wipe();
  }

  void ReadOut(QPointF place) { readout_->setText(Text(images_.ReadOut(place.y(), place.x()))); }

  Comparison images_;
  Image difference_;
  Zoom zoom_{1};
  QGraphicsView* first_ = nullptr;
  QGraphicsRectItem* under_ = nullptr;
  QGraphicsRectItem* line_ = nullptr;
  QSlider* split_ = nullptr;  // where there are two
  QLabel* zoomLabel_ = Make<QLabel>();
  QLabel* readout_ = Make<QLabel>();
};

}  // namespace

void ShowViewer(const Comparison& images, QWidget* parent) {
  Make<Viewer>(images, parent)->show();
}

}  // namespace marovia
