#include "window/file_question.h"

#include <QDir>
#include <QFileDialog>
#include <QMessageBox>

namespace marovia {
namespace {

QString StartFolder(const FileDialog& question) {
  const QString folder = QString::fromStdString(question.initialFolder.string());
  return QDir(folder).exists() ? folder : QDir::homePath();
}

// Offers the filters under the form's words, with the suffix of the one that is chosen.
void OfferFilters(QFileDialog& dialog, const FileDialog& question) {
  const auto filters = SplitFilter(question.filter);
  QStringList names;
  int first = -1;
  for (const FileFilter& filter : filters) {
    const QString pattern = QString::fromStdString(filter.pattern);
    QString name = QString::fromStdString(filter.description);
    if (!name.contains('(')) name += " (" + pattern + ")";
    if (first < 0 && !dialog.directory().entryList({pattern}, QDir::Files).isEmpty())
      first = static_cast<int>(names.size());
    names << name;
  }
  dialog.setNameFilters(names);
  dialog.setDefaultSuffix(QString::fromStdString(question.defaultSuffix));
  QObject::connect(&dialog, &QFileDialog::filterSelected, [&dialog, names, filters](auto& name) {
    const auto index = names.indexOf(name);
    if (index < 0) return;
    dialog.setDefaultSuffix(
        QString::fromStdString(filters[static_cast<std::size_t>(index)].suffix));
  });
  // A list that shows a file says more than an empty one.
  if (!question.writesFile && first > 0) dialog.selectNameFilter(names[first]);
}

bool MayReplace(const QString& file, QWidget* parent) {
  const QString text = QFileInfo(file).fileName() + " already exists. Do you want to replace it?";
  return QMessageBox::warning(parent, "Replace file", text, QMessageBox::Yes | QMessageBox::No,
                              QMessageBox::No) == QMessageBox::Yes;
}

}  // namespace

std::optional<std::filesystem::path> AskForFile(const FileDialog& question, QWidget* parent) {
  QFileDialog dialog(parent, QString::fromStdString(question.title), StartFolder(question));
  dialog.setAcceptMode(question.form == DialogForm::kOpen ? QFileDialog::AcceptOpen
                                                          : QFileDialog::AcceptSave);
  dialog.setFileMode(question.writesFile ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  if (question.writesFile) {
    dialog.setLabelText(QFileDialog::Accept, "&Save");
    // Open dialogs of some desktops take no name that is not there.
    dialog.setOption(QFileDialog::DontUseNativeDialog, question.form == DialogForm::kOpen);
  }
  OfferFilters(dialog, question);
  const bool asks = question.writesFile && (question.flags & kAskBeforeReplacing) != 0;
  while (dialog.exec() == QDialog::Accepted) {
    const QString chosen = dialog.selectedFiles().value(0);
    if (!asks || !QFileInfo::exists(chosen) || MayReplace(chosen, parent))
      return std::filesystem::path(chosen.toStdString());
  }
  return std::nullopt;
}

}  // namespace marovia
