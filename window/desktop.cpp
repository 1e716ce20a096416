// How the form reaches the desktop: its question for a file, the pointer, the help.

#include "window/main_window.h"
#include "window/tool_window.h"

namespace marovia {
namespace {

// A list that shows a file says more than an empty one. A name typed without a suffix gets that of
// the filter's pattern.
void OfferFilters(QFileDialog& dialog, const FileDialog& question) {
  QStringList names, useful;
  for (const FileFilter& filter : SplitFilter(question.filter)) {
    names << QString::fromStdString(filter.description);
    const auto pattern = QString::fromStdString(filter.pattern);
    if (!dialog.directory().entryList({pattern}, QDir::Files).isEmpty()) useful << names.back();
  }
  dialog.setNameFilters(names);
  if (!question.writesFile) dialog.selectNameFilter(useful.value(0));
  dialog.setDefaultSuffix(QString::fromStdString(question.defaultSuffix));
  QObject::connect(&dialog, &QFileDialog::filterSelected, [&dialog](const QString& name) {
    dialog.setDefaultSuffix(name.section('.', -1).chopped(1));
  });
}

bool MayReplace(const QString& file, QWidget* parent) {
  const QString text = QFileInfo(file).fileName() + " already exists. Do you want to replace it?";
  return QMessageBox::warning(parent, "Replace file", text, QMessageBox::Yes | QMessageBox::No,
                              QMessageBox::No) == QMessageBox::Yes;
}

}  // namespace

std::optional<std::filesystem::path> MainWindow::ChooseFile(const FileDialog& question) {
  const auto folder = QString::fromStdString(question.initialFolder.string());
  QFileDialog dialog(this, QString::fromStdString(question.title),
                     QDir(folder).exists() ? folder : QDir::homePath());
  const bool opens = question.form == DialogForm::kOpen;
  dialog.setAcceptMode(opens ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
  dialog.setFileMode(question.writesFile ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  if (question.writesFile) dialog.setLabelText(QFileDialog::Accept, "&Save");
  // Open dialogs of some desktops take no name that is not there.
  dialog.setOption(QFileDialog::DontUseNativeDialog, opens && question.writesFile);
  OfferFilters(dialog, question);
  const bool asks = question.writesFile && (question.flags & kAskBeforeReplacing) != 0;
  while (dialog.exec() == QDialog::Accepted) {
    const QString chosen = dialog.selectedFiles().value(0);
    if (!asks || !QFileInfo::exists(chosen) || MayReplace(chosen, this))
      return chosen.toStdString();
  }
  return std::nullopt;
}

void MainWindow::SetPointer(Pointer pointer) {
  pointer == Pointer::kBusy ? QApplication::setOverrideCursor(Qt::WaitCursor)
                            : QApplication::restoreOverrideCursor();
}

void MainWindow::ShowHelp(const std::filesystem::path& file, int) {
  ShowHelpWindow(file, this);
}

// Installed, the files of the program lie apart from it.
std::filesystem::path MainWindow::ProgramFolder() const {
  const std::filesystem::path beside = QApplication::applicationDirPath().toStdString();
  if (exists(beside / "Marovia.HLP")) return beside;
  return (beside / ".." / "share" / "marovia").lexically_normal();
}

}  // namespace marovia
