#include "window/main_window.h"

#include "window/picture_view.h"
#include "window/tool_window.h"

namespace marovia {
namespace {

constexpr int kTwipsPerPixel = 15;
constexpr int kMargin = 6;
constexpr int kReportLines = 8;

}  // namespace

MainWindow::MainWindow(bool padToFit) {
  form_.Form_Load();
  form_.state.padToFit = padToFit;
  setObjectName("frmMain");
  setWindowTitle("Marovia");
  setAcceptDrops(true);
  MakeMenus();
  setCentralWidget(Row({Column({Pictures(), ReportBox()}), MakeSidePanel(binds_)}));
  centralWidget()->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  binds_.ShowAll();
  resize(form_.window.width / kTwipsPerPixel, minimumSizeHint().height());
}

// The widgets go before the form that they show.
MainWindow::~MainWindow() {
  form_.Form_Unload();
  const std::unique_ptr<QWidget> widgets(takeCentralWidget());
}

void MainWindow::OpenFile(const std::filesystem::path& file) {
  binds_.Run([this, &file] { form_.OpenFile(file); });
}

void MainWindow::MakeMenus() {
  const auto add = [this](QWidget* menu, const MenuItem& item, const QKeySequence& keys = {}) {
    auto* action = Make<QAction>(menu);
    menu->addAction(action);
    action->setShortcut(keys);
    binds_.Bind(action, item);
  };
  QMenu* file = menuBar()->addMenu(QString());
  binds_.Bind(file->menuAction(), form_.mnuFile);
  add(file, form_.mnuGetImage, QKeySequence::Open);
  file->addSeparator()->setObjectName("mnuSeparator");
  add(file, form_.mnuSaveReconstructedImage, QKeySequence::Save);
  add(menuBar(), form_.mnuTransformImage);
  add(menuBar(), form_.mnuCompress);
  add(menuBar(), form_.mnuDecompress);
  add(menuBar(), form_.mnuErrormeasures);
  add(menuBar(), form_.mnuHelp, QKeySequence::HelpContents);
}

QWidget* MainWindow::Pictures() {
  auto* source =
      MakePicture(binds_, form_.GraphBox, OpenViewer(true),
                  "Drop an image or a compressed file here, or choose Get Image in the File menu.");
  auto* reconstruction = MakePicture(binds_, form_.GraphBoxRec, OpenViewer(false),
                                     "Decompressing shows its picture here.");
  auto* image = binds_.New<QRadioButton>(form_.OpDisplayImage, &form_.OpDisplayImage.selected);
  auto* transform =
      binds_.New<QRadioButton>(form_.OpDisplayTransform, &form_.OpDisplayTransform.selected);
  source->setAccessibleName("Source picture");
  reconstruction->setAccessibleName("Reconstructed picture");
  image->setAccessibleName("Show the image");
  transform->setAccessibleName("Show the transform");
  return Columns(3, {binds_.New<QLabel>("SourceCaption", &frmMain::SourceCaption), source,
                     Row({image, transform, kRoom}),
                     binds_.New<QLabel>("ReconstructionCaption", &frmMain::ReconstructionCaption),
                     reconstruction, Row({kRoom, CompareButton()})});
}

QWidget* MainWindow::CompareButton() {
  auto* button = Make<QPushButton>("Full resolution...");
  button->setObjectName("OpenViewer");
  button->setToolTip("Compare the images pixel by pixel (also a double-click on a picture)");
  connect(button, &QPushButton::clicked, this, OpenViewer(true));
  binds_.Also([this, button] { button->setEnabled(form_.Compared(true).has_value()); });
  return button;
}

QWidget* MainWindow::ReportBox() {
  auto* report = binds_.New<QPlainTextEdit>(form_.Report);
  report->setReadOnly(true);
  report->setAcceptDrops(false);
  report->setTabChangesFocus(true);
  report->setAccessibleName("Report");
  report->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  report->setFixedHeight(report->fontMetrics().lineSpacing() * kReportLines + 2 * kMargin);
  return report;
}

Binds::Handler MainWindow::OpenViewer(bool prefersSource) {
  return [this, prefersSource] {
    if (const auto images = form_.Compared(prefersSource)) ShowViewer(*images, this);
  };
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
