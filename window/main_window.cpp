#include "window/main_window.h"

#include <utility>

#include "window/settle.h"
#include "window/studio.h"
#include "window/tool_window.h"

namespace marovia {
namespace {

constexpr int kReportLines = 8;
constexpr int kLeastReportLines = 3;
constexpr const char* kLongestCaption = "Reconstruction: 9999 x 9999 pixels";

// Whatever the other program would rather do.
void TakeAsCopy(QDropEvent& event) {
  event.setDropAction(Qt::CopyAction);
  event.accept();
}

// While a question is open, the form is in the middle of an action.
bool Takes(const QDropEvent& event) {
  return event.mimeData()->hasUrls() && QApplication::activeModalWidget() == nullptr;
}

class FormWindow : public MainWindow, private Desktop {
 public:
  explicit FormWindow(bool padToFit) {
    form_.Form_Load();
    form_.state.padToFit = padToFit;
    form_.state.exactRate = true;
    setObjectName("frmMain");
    setWindowTitle("Marovia");
    setAcceptDrops(true);
    MakeMenus();
    setCentralWidget(Row({Column({Pictures(), ReportBox()}), MakeSidePanel(binds_)}));
    centralWidget()->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    binds_.ShowAll();
    resize(QSize(form_.window.width / kTwipsPerPixel, 0)
               .expandedTo(sizeHint())
               .boundedTo(RoomOnScreen(*this)));
  }

  // The widgets go before the form that they show.
  ~FormWindow() override {
    form_.Form_Unload();
    const std::unique_ptr<QWidget> widgets(takeCentralWidget());
  }

  [[nodiscard]] const frmMain& Form() const override { return form_; }
  void OpenFiles(const std::vector<std::filesystem::path>& files) override {
    binds_.Run([&] { form_.OpenFiles(files); });
  }

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override {
    if (Takes(*event)) TakeAsCopy(*event);
  }
  void dropEvent(QDropEvent* event) override {
    if (!Takes(*event)) return;
    TakeAsCopy(*event);
    std::vector<std::filesystem::path> files;
    for (const QUrl& url : event->mimeData()->urls())
      if (url.isLocalFile()) files.emplace_back(url.toLocalFile().toStdString());
    OpenFiles(files);
  }

 private:
  std::optional<std::filesystem::path> ChooseFile(const FileDialog& question) override {
    return AskForFile(question, this);
  }
  void SetPointer(Pointer pointer) override {
    pointer == Pointer::kBusy ? QApplication::setOverrideCursor(Qt::WaitCursor)
                              : QApplication::restoreOverrideCursor();
    wasBusy_ = true;
  }
  void Repaint(const Control& control) override { binds_.Repaint(control); }
  void SetFocus(const Control& control) override { binds_.SetFocus(control); }
  void Work(const std::function<void()>& work) override { WorkBeside(work); }
  void Tell(const std::function<void()>& news) override { TellThread(*this, news); }
  void ShowStudio(const StudioRequest& request) override { OpenInStudio(request); }
  void ShowHelp(const std::filesystem::path& file, int) override { ShowHelpWindow(file, this); }
  [[nodiscard]] std::filesystem::path ProgramFolder() const override {
    return FolderOfProgramFiles(QApplication::applicationDirPath().toStdString());
  }
  [[nodiscard]] std::filesystem::path PicturesFolder() const override {
    return QStandardPaths::writableLocation(QStandardPaths::PicturesLocation).toStdString();
  }

  void MakeMenus() {
    QMenu* file = menuBar()->addMenu(QString());
    binds_.Bind(file->menuAction(), form_.mnuFile);
    binds_.Bind(file->addAction(QString()), form_.mnuGetImage);
    file->addSeparator()->setObjectName("mnuSeparator");
    binds_.Bind(file->addAction(QString()), form_.mnuSaveReconstructedImage);
    for (const MenuItem* item : {&form_.mnuTransformImage, &form_.mnuCompress, &form_.mnuDecompress,
                                 &form_.mnuErrormeasures, &form_.mnuHelp})
      binds_.Bind(menuBar()->addAction(QString()), *item);
  }

  // In two lines where the letters are large or the screen is small, whatever the text, so that the
  // pictures stay where they are. A label that wraps would keep all beside it from getting smaller.
  QWidget* Caption(const char* name, std::string (frmMain::*text)() const) {
    auto* caption = binds_.New<QLabel>(name, text);
    const int room =
        std::min(PicturePlace::GoodRoom(devicePixelRatioF()), RoomOnScreen(*this).width() / 4);
    if (caption->fontMetrics().horizontalAdvance(kLongestCaption) <= room) return caption;
    caption->setMinimumHeight(2 * caption->fontMetrics().lineSpacing());
    caption->setAlignment(Qt::AlignLeft | Qt::AlignBottom);
    binds_.Also([caption] { caption->setText(caption->text().replace(": ", ":\n")); });
    return caption;
  }

  QWidget* Pictures() {
    const auto option = [this](const OptionButton& control) {
      return binds_.New<QRadioButton>(control, &control.selected);
    };
    return Columns(
        3, {Caption("SourceCaption", &frmMain::SourceCaption), MakePicture(binds_, form_.GraphBox),
            Row({option(form_.OpDisplayImage), option(form_.OpDisplayTransform), Room()}),
            Caption("ReconstructionCaption", &frmMain::ReconstructionCaption),
            MakePicture(binds_, form_.GraphBoxRec),
            Row({Room(), binds_.New<QPushButton>(form_.cmdStudio)})});
  }

  QWidget* ReportBox() {
    auto* report = binds_.New<QPlainTextEdit>(form_.Report);
    report->setReadOnly(true);
    report->setUndoRedoEnabled(false);
    report->setAcceptDrops(false);
    report->setTabChangesFocus(true);
    // So that nothing behind it is painted at every pass.
    report->verticalScrollBar()->setAutoFillBackground(true);
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setStyleStrategy(QFont::PreferNoShaping);  // which takes longer than all else of a line
    report->setFont(font);
    const int line = report->fontMetrics().lineSpacing();
    report->setMinimumHeight(line * kLeastReportLines + 2 * kMargin);
    report->setMaximumHeight(line * kReportLines + 2 * kMargin);
    return report;
  }

  frmMain form_{*this};
  // What is clicked during a run would meet controls that mean something else after it.
  Binds binds_{form_, [this] {
                 if (std::exchange(wasBusy_, false)) Settle();
               }};
  bool wasBusy_ = false;
};

}  // namespace

std::unique_ptr<MainWindow> MakeMainWindow(bool padToFit) {
  return std::make_unique<FormWindow>(padToFit);
}

}  // namespace marovia
