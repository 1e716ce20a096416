#include "window/main_window.h"

#include "window/tool_window.h"

namespace marovia {
namespace {

constexpr int kReportLines = 8;

// A name typed without a suffix gets that of the filter's pattern.
void SetUp(QFileDialog& dialog, const FileDialog& question) {
  const bool opens = question.form == DialogForm::kOpen;
  dialog.setAcceptMode(opens ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
  dialog.setFileMode(question.writesFile ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  if (question.writesFile) dialog.setLabelText(QFileDialog::Accept, "&Save");
  // Open dialogs of some desktops take no name that is not there.
  dialog.setOption(QFileDialog::DontUseNativeDialog, opens && question.writesFile);
  dialog.setNameFilter(Text(FilterNames(question.filter)));
  const auto folder = dialog.directory().filesystemPath();
  if (!question.writesFile) dialog.selectNameFilter(Text(UsefulFilter(question.filter, folder)));
  dialog.setDefaultSuffix(Text(question.defaultSuffix));
  QObject::connect(&dialog, &QFileDialog::filterSelected, [&dialog](const QString& name) {
    dialog.setDefaultSuffix(Text(SuffixOfFilter(name.toStdString())));
  });
}

bool MayReplace(const QString& file, QWidget* parent) {
  return QMessageBox::warning(parent, "Replace file", Text(ReplaceQuestion(file.toStdString())),
                              QMessageBox::Yes | QMessageBox::No,
                              QMessageBox::No) == QMessageBox::Yes;
}

class FormWindow : public MainWindow, private Desktop {
 public:
  explicit FormWindow(bool padToFit) {
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
  ~FormWindow() override {
    form_.Form_Unload();
    const std::unique_ptr<QWidget> widgets(takeCentralWidget());
  }

  [[nodiscard]] const frmMain& Form() const override { return form_; }
  void OpenFile(const std::filesystem::path& file) override {
    binds_.Run([&] { form_.OpenFile(file); });
  }

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override {
    if (event->mimeData()->hasUrls()) event->acceptProposedAction();
  }
  void dropEvent(QDropEvent* event) override {
    for (const QUrl& url : event->mimeData()->urls())
      if (url.isLocalFile()) OpenFile(url.toLocalFile().toStdString());
    event->acceptProposedAction();
  }

 private:
  std::optional<std::filesystem::path> ChooseFile(const FileDialog& question) override {
    const QString folder = Text(question.initialFolder.string());
    QFileDialog dialog(this, Text(question.title),
                       QDir(folder).exists() ? folder : QDir::homePath());
    SetUp(dialog, question);
    while (dialog.exec() == QDialog::Accepted) {
      const QString chosen = dialog.selectedFiles().value(0);
      if (!question.AsksBeforeReplacing() || !QFileInfo::exists(chosen) || MayReplace(chosen, this))
        return chosen.toStdString();
    }
    return std::nullopt;
  }
  void SetPointer(Pointer pointer) override {
    pointer == Pointer::kBusy ? QApplication::setOverrideCursor(Qt::WaitCursor)
                              : QApplication::restoreOverrideCursor();
  }
  void Repaint(const Control& control) override { binds_.Repaint(control); }
  void SetFocus(const Control& control) override { binds_.SetFocus(control); }
  void ShowViewer(const Comparison& images) override { marovia::ShowViewer(images, this); }
  void ShowHelp(const std::filesystem::path& file, int) override { ShowHelpWindow(file, this); }
  [[nodiscard]] std::filesystem::path ProgramFolder() const override {
    return FolderOfProgramFiles(QApplication::applicationDirPath().toStdString());
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

  QWidget* Pictures() {
    const auto option = [this](const OptionButton& control) {
      return binds_.New<QRadioButton>(control, &control.selected);
    };
    return Columns(3,
                   {binds_.New<QLabel>("SourceCaption", &frmMain::SourceCaption),
                    MakePicture(binds_, form_.GraphBox),
                    Row({option(form_.OpDisplayImage), option(form_.OpDisplayTransform), Room()}),
                    binds_.New<QLabel>("ReconstructionCaption", &frmMain::ReconstructionCaption),
                    MakePicture(binds_, form_.GraphBoxRec),
                    Row({Room(), binds_.New<QPushButton>(form_.cmdViewer)})});
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
    report->setFixedHeight(report->fontMetrics().lineSpacing() * kReportLines + 2 * kMargin);
    return report;
  }

  frmMain form_{*this};
  Binds binds_{form_};
};

}  // namespace

std::unique_ptr<MainWindow> MakeMainWindow(bool padToFit) {
  return std::make_unique<FormWindow>(padToFit);
}

}  // namespace marovia
