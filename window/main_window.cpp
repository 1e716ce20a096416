#include "window/main_window.h"

#include <QApplication>
#include <QBoxLayout>
#include <QDropEvent>
#include <QFileInfo>
#include <QFontDatabase>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>

#include "window/file_question.h"
#include "window/help_window.h"
#include "window/make.h"
#include "window/picture_view.h"
#include "window/side_panel.h"
#include "window/viewer.h"

namespace marovia {
namespace {

constexpr int kTwipsPerPixel = 15;
constexpr int kMargin = 6;
constexpr int kReportLines = 8;

QString Shape(const QString& what, const Image& image) {
  if (image.Empty()) return what;
  return QString("%1: %2 x %3 pixels").arg(what).arg(image.Cols()).arg(image.Rows());
}

// As the widgets stand in their layouts: left to right, down the panel.
void OrderTabs(QWidget& window) {
  QWidget* last = nullptr;
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    if ((widget->focusPolicy() & Qt::TabFocus) == 0) continue;
    if (last != nullptr) QWidget::setTabOrder(last, widget);
    last = widget;
  }
}

}  // namespace

MainWindow::MainWindow(bool padToFit) : form_(*this) {
  form_.Form_Load();
  form_.state.padToFit = padToFit;
  setObjectName("frmMain");
  setWindowTitle("Marovia");
  setAcceptDrops(true);
  MakeMenus();
  MakeMiddle();
  OrderTabs(*this);
  binds_.ShowAll();
  resize(form_.window.width / kTwipsPerPixel, minimumSizeHint().height());
}

MainWindow::~MainWindow() {
  form_.Form_Unload();
}

void MainWindow::OpenFile(const std::filesystem::path& file) {
  binds_.Run([this, &file] { form_.OpenFile(file); });
}

void MainWindow::MakeMenus() {
  const auto add = [this](QWidget* menu, const MenuItem& item, void (frmMain::*handler)()) {
    auto& action = Make<QAction>(menu);
    menu->addAction(&action);
    binds_.Bind(action, item, [this, handler] { (form_.*handler)(); });
    return &action;
  };
  QMenu* file = menuBar()->addMenu(QString());
  binds_.Bind(*file->menuAction(), form_.mnuFile, [] {});
  add(file, form_.mnuGetImage, &frmMain::mnuGetImage_Click)->setShortcut(QKeySequence::Open);
  file->addSeparator()->setObjectName("mnuSeparator");
  add(file, form_.mnuSaveReconstructedImage, &frmMain::mnuSaveReconstructedImage_Click)
      ->setShortcut(QKeySequence::Save);
  QMenuBar* bar = menuBar();
  add(bar, form_.mnuTransformImage, &frmMain::mnuTransformImage_Click);
  add(bar, form_.mnuCompress, &frmMain::mnuCompress_Click);
  add(bar, form_.mnuDecompress, &frmMain::mnuDecompress_Click);
  add(bar, form_.mnuErrormeasures, &frmMain::mnuErrormeasures_Click);
  add(bar, form_.mnuHelp, &frmMain::mnuHelp_Click)->setShortcut(QKeySequence::HelpContents);
}

void MainWindow::MakeMiddle() {
  auto& middle = Make<QWidget>();
  setCentralWidget(&middle);
  auto& row = Make<QHBoxLayout>(&middle);
  row.setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  row.setSpacing(kMargin + 2);
  auto& left = Make<QVBoxLayout>();
  row.addLayout(&left, 1);
  left.addLayout(&Pictures(), 1);
  left.addWidget(&ReportBox());
  QWidget& panel = MakeSidePanel(form_, binds_);
  panel.setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
  row.addWidget(&panel);
}

QLayout& MainWindow::Pictures() {
  auto& row = Make<QHBoxLayout>();
  row.setSpacing(kMargin);
  row.addLayout(&SourcePicture(), 1);
  row.addLayout(&ReconstructedPicture(), 1);
  return row;
}

QLayout& MainWindow::SourcePicture() {
  auto& column = Make<QVBoxLayout>();
  auto& caption = MakeLabel("SourceCaption");
  auto& view = Make<PictureView>();
  view.setAccessibleName("Source picture");
  view.placeholder =
      "Drop an image or a compressed file here, or choose Get Image in the File menu.";
  const auto mouse = [this](void (frmMain::*handler)(std::int16_t, std::int16_t, float, float)) {
    return [this, handler](QPoint at) {
      binds_.Run(
          [&] { (form_.*handler)(1, 0, static_cast<float>(at.x()), static_cast<float>(at.y())); });
    };
  };
  view.onDown = mouse(&frmMain::GraphBox_MouseDown);
  view.onMove = mouse(&frmMain::GraphBox_MouseMove);
  view.onUp = mouse(&frmMain::GraphBox_MouseUp);
  view.onOpen = [this] { OpenViewer(true); };
  binds_.Bind(view, form_.GraphBox);
  binds_.Also([this, &caption] {
    caption.setText(Shape(form_.state.GraphBoxContent == 'T' ? "Transform" : "Source",
                          *form_.state.SourceImage));
  });
  column.addWidget(&caption);
  column.addWidget(&view, 1);
  column.addWidget(&DisplayChoice());
  return column;
}

// In a widget of its own, since options exclude all others below their parent.
QWidget& MainWindow::DisplayChoice() {
  auto& choice = Make<QWidget>();
  auto& row = Make<QHBoxLayout>(&choice);
  row.setContentsMargins(0, 0, 0, 0);
  auto& image = Make<QRadioButton>();
  auto& transform = Make<QRadioButton>();
  image.setAccessibleName("Show the image");
  transform.setAccessibleName("Show the transform");
  const auto choose = [this](OptionButton& chosen, OptionButton& other, auto handler) {
    return [this, &chosen, &other, handler] {
      chosen.selected = true;
      other.selected = false;
      (form_.*handler)();
    };
  };
  binds_.Bind(
      image, form_.OpDisplayImage,
      choose(form_.OpDisplayImage, form_.OpDisplayTransform, &frmMain::OpDisplayImage_Click));
  binds_.Bind(
      transform, form_.OpDisplayTransform,
      choose(form_.OpDisplayTransform, form_.OpDisplayImage, &frmMain::OpDisplayTransform_Click));
  row.addWidget(&image);
  row.addWidget(&transform);
  row.addStretch();
  return choice;
}

QLayout& MainWindow::ReconstructedPicture() {
  auto& column = Make<QVBoxLayout>();
  auto& caption = MakeLabel("ReconstructionCaption");
  auto& view = Make<PictureView>();
  view.setAccessibleName("Reconstructed picture");
  view.placeholder = "Decompressing shows its picture here.";
  view.onOpen = [this] { OpenViewer(false); };
  binds_.Bind(view, form_.GraphBoxRec);
  auto& compare = Make<QPushButton>("Full resolution...");
  compare.setObjectName("OpenViewer");
  compare.setToolTip("Compare the images pixel by pixel (also a double-click on a picture)");
  connect(&compare, &QPushButton::clicked, this, [this] { OpenViewer(true); });
  binds_.Also([this, &caption, &compare] {
    const bool shown = !form_.GraphBoxRec.raster.Empty();
    caption.setText(Shape("Reconstruction", shown ? *form_.state.ReconstructedImage : Image()));
    compare.setEnabled(shown || !form_.GraphBox.raster.Empty());
  });
  column.addWidget(&caption);
  column.addWidget(&view, 1);
  auto& row = Make<QHBoxLayout>();
  row.addStretch();
  row.addWidget(&compare);
  column.addLayout(&row);
  return column;
}

QWidget& MainWindow::ReportBox() {
  auto& report = Make<QPlainTextEdit>();
  report.setReadOnly(true);
  report.setAcceptDrops(false);
  report.setTabChangesFocus(true);
  report.setAccessibleName("Report");
  report.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  report.setFixedHeight(report.fontMetrics().lineSpacing() * kReportLines + 2 * kMargin);
  binds_.Bind(report, form_.Report);
  return report;
}

void MainWindow::OpenViewer(bool prefersSource) {
  const bool decoded = !form_.GraphBoxRec.raster.Empty();
  if (!decoded && form_.state.SourceImage->Empty()) return;
  auto& viewer = Make<Viewer>(form_.state.SourceImage,
                              decoded ? form_.state.ReconstructedImage : SharedValue<Image>(),
                              prefersSource, this);
  viewer.show();
}

std::optional<std::filesystem::path> MainWindow::ChooseFile(const FileDialog& dialog) {
  return AskForFile(dialog, this);
}

void MainWindow::SetPointer(Pointer pointer) {
  pointer == Pointer::kBusy ? QApplication::setOverrideCursor(Qt::WaitCursor)
                            : QApplication::restoreOverrideCursor();
}

void MainWindow::Repaint(const Control& control) {
  binds_.Repaint(control);
}

void MainWindow::SetFocus(const Control& control) {
  binds_.SetFocus(control);
}

void MainWindow::ShowHelp(const std::filesystem::path& file, int) {
  if (help_ == nullptr) help_ = &Make<HelpWindow>(this);
  help_->ShowContents(file);
}

// Installed, the files of the program lie apart from it.
std::filesystem::path MainWindow::ProgramFolder() const {
  const std::filesystem::path beside = QApplication::applicationDirPath().toStdString();
  if (exists(beside / "Marovia.HLP")) return beside;
  return (beside / ".." / "share" / "marovia").lexically_normal();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  for (const QUrl& url : event->mimeData()->urls())
    if (url.isLocalFile()) OpenFile(url.toLocalFile().toStdString());
  event->acceptProposedAction();
}

}  // namespace marovia
