#include <array>

#include "marovia/version.h"

#include "window/studio_window.h"
#include "window/theme.h"

namespace marovia {

QAction* Studio::Add(QMenu* menu, const QString& text, const QKeySequence& keys, const Slot& slot) {
  QAction* action = menu->addAction(text);
  action->setShortcut(keys);
  connect(action, &QAction::triggered, this, slot);
  return action;
}

void Studio::MakeFileMenu() {
  QMenu* file = menuBar()->addMenu(tr("&File"));
  bar_->addAction(Add(file, tr("&Open..."), QKeySequence::Open, [this] { AskOpen(); }));
  recent_ = file->addMenu(tr("Open &Recent"));
  connect(recent_, &QMenu::aboutToShow, this, &Studio::ListRecent);
  file->addSeparator();
  needPicture_ = {
      Add(file, tr("&Save Compressed File..."), QKeySequence::Save, [this] { SaveFile(); }),
      Add(file, tr("Save &Picture..."), QKeySequence::SaveAs, [this] { SavePicture(); })};
  bar_->addAction(needPicture_.front());
  file->addSeparator();
  Add(file, tr("&Close"), QKeySequence::Close, [this] { close(); });
  Add(file, tr("&Quit"), QKeySequence::Quit, [] { QApplication::closeAllWindows(); });
}

void Studio::MakeEditMenu() {
  QMenu* edit = menuBar()->addMenu(tr("&Edit"));
  needPicture_ << Add(edit, tr("&Copy Picture"), QKeySequence::Copy, [this] {
    QApplication::clipboard()->setImage(ShownImage(session_.TheSight().picture.Whole()).copy());
    Tell(tr("The picture is on the clipboard."));
  });
  Add(edit, tr("&Paste Image"), QKeySequence::Paste,
      [this] { Take(QApplication::clipboard()->mimeData()); });
}

void Studio::MakeViewMenu() {
  QMenu* menu = menuBar()->addMenu(tr("&View"));
  const std::array names = {tr("&Picture"), tr("&Wipe"), tr("&Side by Side"), tr("&Difference"),
                            tr("&Heat Map")};
  for (std::size_t i = 0; i < names.size(); ++i) {
    const auto view = static_cast<View>(i);
    const QKeySequence keys(Qt::ALT | static_cast<Qt::Key>(Qt::Key_1 + static_cast<int>(i)));
    QAction* action = Add(menu, names.at(i), keys, [this, view] { SetView(view); });
    action->setCheckable(true);
    action->setChecked(i == 0);
    views_->addAction(action);
  }
  menu->addSeparator();
  Add(menu, tr("Zoom &In"), QKeySequence::ZoomIn, [this] { stage_->ZoomBy(2); });
  Add(menu, tr("Zoom &Out"), QKeySequence::ZoomOut, [this] { stage_->ZoomBy(0.5); });
  Add(menu, tr("&Fit"), Qt::CTRL | Qt::Key_0, [this] { stage_->Fit(); });
  Add(menu, tr("&100 %"), Qt::CTRL | Qt::Key_1, [this] { stage_->ZoomTo(1); });
  Add(menu, tr("&200 %"), Qt::CTRL | Qt::Key_2, [this] { stage_->ZoomTo(2); });
  menu->addSeparator();
  QMenu* themes = menu->addMenu(tr("&Theme"));
  for (const QString& theme : ThemeNames()) {
    Add(themes, theme, {}, [theme] {
      SetTheme(theme);
      Settings().setValue("theme", theme);
    });
  }
}

void Studio::MakeHelpMenu() {
  QMenu* help = menuBar()->addMenu(tr("&Help"));
  Add(help, tr("&Keys"), QKeySequence::HelpContents, [this] {
    QMessageBox::information(
        this, tr("Keys"),
        tr("<table cellpadding=3><tr><td><b>Space</b></td><td>held down shows the source</td></tr>"
           "<tr><td><b>Alt+1 ... Alt+5</b></td><td>picture, wipe, side by side, difference, heat "
           "map</td></tr><tr><td><b>Wheel, Ctrl++, Ctrl+-</b></td><td>zoom</td></tr>"
           "<tr><td><b>Ctrl+0, 1, 2</b></td><td>fit, 100 %, 200 %</td></tr>"
           "<tr><td><b>Arrows</b></td><td>move the picture, or the region while Draw is "
           "on</td></tr>"
           "<tr><td><b>Ctrl+Left, Right</b></td><td>move the wipe</td></tr></table>"));
  });
  Add(help, tr("&About"), {}, [this] {
    QMessageBox::about(this, tr("About Marovia Studio"),
                       tr("<b>Marovia Studio %1</b><p>Embedded wavelet compression of grey "
                          "images: every length of a file is a picture.")
                           .arg(Text(kVersion)));
  });
}

void Studio::MakeBar() {
  bar_->setObjectName("Bar");
  bar_->setMovable(false);
  bar_->addSeparator();
  bar_->addActions(views_->actions());
  gain_->setObjectName("Gain");
  gain_->setAccessibleName(tr("Gain of the difference"));
  gain_->setToolTip(gain_->accessibleName());
  gain_->setRange(1, 64);
  gain_->setValue(8);
  gain_->setPrefix("x ");
  gain_->setEnabled(false);
  connect(gain_, &QSpinBox::valueChanged, this, [this] { SetView(view_); });
  bar_->addWidget(gain_);
  auto* room = Make<QWidget>();
  room->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  bar_->addWidget(room);
  zoom_->setObjectName("Zoom");
  zoom_->setContentsMargins(kMargin, 0, kMargin, 0);
  bar_->addWidget(zoom_);
}

QWidget* Studio::RateBar() {
  slider_->setObjectName("RateSlider");
  slider_->setAccessibleName(tr("Size of the file"));
  slider_->setRange(0, kSliderSteps);
  slider_->setSingleStep(kSliderSteps / 200);
  slider_->setPageStep(kSliderSteps / 20);
  slider_->setEnabled(false);
  connect(slider_, &QSlider::valueChanged, this, [this](int value) {
    SetBytes(session_.Scale().BytesAt(static_cast<double>(value) / kSliderSteps));
  });
  auto* drag = Make<QPushButton>(tr("Drag file out"));
  drag->setObjectName("DragFile");
  drag->setToolTip(tr("Drag the compressed file from here to another window"));
  connect(drag, &QPushButton::pressed, this, [this] { DragFile(); });
  auto* row = Row({least_, slider_, most_, drag});
  static_cast<QBoxLayout*>(row->layout())->setStretch(1, 1);
  return row;
}

}  // namespace marovia
