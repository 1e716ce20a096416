#include "window/viewer.h"

#include <QBoxLayout>
#include <QScrollBar>
#include <QShortcut>
#include <QSlider>
#include <QStatusBar>
#include <QToolBar>
#include <algorithm>
#include <cmath>
#include <utility>

#include "window/compare_pane.h"
#include "window/make.h"
#include "window/shown_image.h"

namespace marovia {
namespace {

constexpr double kMinZoom = 1.0 / 16;
constexpr double kMaxZoom = 32;
constexpr int kGain = 4;
constexpr int kMaxGain = 32;
constexpr int kSplitSteps = 100;

// Mid-grey where the two agree.
QImage DifferenceImage(const Image& source, const Image& reconstruction, int gain) {
  QImage image(source.Cols(), source.Rows(), QImage::Format_Grayscale8);
  for (int r = 0; r < source.Rows(); ++r) {
    const auto from = source.Row(r);
    const auto to = reconstruction.Row(r);
    uchar* out = image.scanLine(r);
    for (std::size_t c = 0; c < from.size(); ++c)
      out[c] = static_cast<uchar>(std::clamp(128 + gain * (to[c] - from[c]), 0, 255));
  }
  return image;
}

QVBoxLayout& Captioned(const QString& caption, QWidget& widget) {
  auto& column = Make<QVBoxLayout>();
  column.addWidget(&MakeLabel("", caption));
  column.addWidget(&widget, 1);
  return column;
}

}  // namespace

Viewer::Viewer(SharedValue<Image> source, SharedValue<Image> reconstruction, bool prefersSource,
               QWidget* parent)
    : QMainWindow(parent),
      source_(std::move(source)),
      reconstruction_(std::move(reconstruction)),
      comparable_(!source_->Empty() && source_->SameShape(*reconstruction_)),
      wipe_(&Make<ComparePane>()),
      differencePane_(&Make<ComparePane>()),
      zoomLabel_(&MakeLabel("ZoomLabel")),
      gainLabel_(&MakeLabel("GainLabel")),
      readout_(&MakeLabel("Readout")) {
  setObjectName("Viewer");
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle("Full Resolution - Marovia");
  resize(comparable_ ? 1120 : 680, 680);
  MakeBar();
  MakePanes(prefersSource);
  readout_->setContentsMargins(6, 0, 0, 0);
  statusBar()->addWidget(readout_, 1);
  ReadOut({});
  connect(&Make<QShortcut>(QKeySequence::Cancel, this), &QShortcut::activated, this,
          &QWidget::close);
  SetZoom(std::round(devicePixelRatioF()));
}

void Viewer::MakeBar() {
  auto& bar = Make<QToolBar>("View");
  bar.setMovable(false);
  addToolBar(&bar);
  const auto add = [this, &bar](const QString& text, const QKeySequence& keys, auto act) {
    QAction* action = bar.addAction(text, this, act);
    action->setShortcut(keys);
    action->setToolTip(text + " (" + keys.toString(QKeySequence::NativeText) + ")");
    return action;
  };
  add("Zoom Out", Qt::CTRL | Qt::Key_Minus, [this] { SetZoom(zoom_ / 2); });
  zoomLabel_->setMinimumWidth(fontMetrics().horizontalAdvance("  3200 %  "));
  zoomLabel_->setAlignment(Qt::AlignCenter);
  bar.addWidget(zoomLabel_);
  add("Zoom In", Qt::CTRL | Qt::Key_Plus, [this] { SetZoom(zoom_ * 2); });
  add("Full Size", Qt::CTRL | Qt::Key_1, [this] { SetZoom(1); });
  add("Fit", Qt::CTRL | Qt::Key_0, [this] { SetZoom(wipe_->FittingZoom()); });
  if (!comparable_) return;

  splitSlider_ = &AddSlider(bar, "Split", "Wipe:");
  splitSlider_->setRange(0, kSplitSteps);
  connect(splitSlider_, &QSlider::valueChanged, this,
          [this](int value) { wipe_->SetSplit(static_cast<double>(value) / kSplitSteps); });
  QSlider& gain = AddSlider(bar, "Gain", "Difference gain:");
  gain.setRange(1, kMaxGain);
  gain.setValue(kGain);
  gainLabel_->setMinimumWidth(fontMetrics().horizontalAdvance("  x 32  "));
  bar.addWidget(gainLabel_);
  connect(&gain, &QSlider::valueChanged, this, &Viewer::ShowDifference);
}

QSlider& Viewer::AddSlider(QToolBar& bar, const char* name, const QString& caption) {
  bar.addSeparator();
  bar.addWidget(&MakeLabel("", " " + caption + " "));
  auto& slider = Make<QSlider>(Qt::Horizontal);
  slider.setObjectName(name);
  slider.setAccessibleName(caption);
  slider.setMaximumWidth(160);
  bar.addWidget(&slider);
  return slider;
}

// The panes are of one size, so that the scroll bars of each fit the other.
void Viewer::MakePanes(bool prefersSource) {
  auto& middle = Make<QWidget>();
  auto& row = Make<QHBoxLayout>(&middle);
  setCentralWidget(&middle);
  wipe_->setObjectName("Wipe");
  differencePane_->setObjectName("Difference");
  for (ComparePane* pane : {wipe_, differencePane_}) {
    pane->onPoint = [this](auto place) { ReadOut(place); };
    pane->onZoom = [this](double notches) { SetZoom(zoom_ * std::exp2(notches / 2)); };
  }
  const QImage source = ShownImage(*source_);
  const QImage reconstruction = ShownImage(*reconstruction_);
  wipe_->setAccessibleName("Images");
  if (!comparable_) {
    const bool showsSource = reconstruction.isNull() || (prefersSource && !source.isNull());
    wipe_->SetImages(showsSource ? source : reconstruction);
    row.addLayout(&Captioned(showsSource ? "Source" : "Reconstruction", *wipe_), 1);
    differencePane_->setParent(this);
    differencePane_->hide();
    return;
  }
  wipe_->SetImages(source, reconstruction);
  wipe_->onSplit = [this](double share) {
    splitSlider_->setValue(static_cast<int>(std::lround(share * kSplitSteps)));
  };
  splitSlider_->setValue(kSplitSteps / 2);
  differencePane_->setAccessibleName("Difference");
  row.addLayout(&Captioned("Source, and right of the handle the reconstruction", *wipe_), 1);
  row.addLayout(&Captioned("Difference: mid-grey is zero", *differencePane_), 1);
  for (const auto bar :
       {&QAbstractScrollArea::horizontalScrollBar, &QAbstractScrollArea::verticalScrollBar}) {
    QScrollBar* one = (wipe_->*bar)();
    QScrollBar* other = (differencePane_->*bar)();
    connect(one, &QScrollBar::valueChanged, other, &QScrollBar::setValue);
    connect(other, &QScrollBar::valueChanged, one, &QScrollBar::setValue);
  }
  ShowDifference(kGain);
}

void Viewer::ShowDifference(int gain) {
  difference_ = DifferenceImage(*source_, *reconstruction_, gain);
  differencePane_->SetImages(difference_);
  gainLabel_->setText(QString("  x %1").arg(gain));
}

void Viewer::SetZoom(double zoom) {
  zoom_ = std::clamp(zoom, kMinZoom, kMaxZoom);
  wipe_->SetZoom(zoom_);
  differencePane_->SetZoom(zoom_);
  zoomLabel_->setText(QString("%1 %").arg(std::lround(zoom_ * 100)));
}

void Viewer::ReadOut(std::optional<QPoint> place) {
  if (!place) return readout_->setText("Point at a pixel to read it. Ctrl and the wheel zoom.");
  const int row = place->y();
  const int col = place->x();
  QString text = QString("Row %1, column %2:").arg(row).arg(col);
  const auto has = [row, col](const Image& image) {
    return row < image.Rows() && col < image.Cols();
  };
  const Image& source = *source_;
  const Image& reconstruction = *reconstruction_;
  if (has(source)) text += QString("   source %1").arg(source(row, col));
  if (has(reconstruction)) text += QString("   reconstruction %1").arg(reconstruction(row, col));
  if (comparable_)
    text += QString("   difference %1").arg(reconstruction(row, col) - source(row, col));
  readout_->setText(text);
}

}  // namespace marovia
