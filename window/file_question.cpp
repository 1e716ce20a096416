// Asks for files, and keeps what happens beside a run away from it: a run takes no events, so that
// a dialog must have closed before it, and what is clicked and typed while it lasts is dropped.
#include "window/main_window.h"

namespace marovia {
namespace {

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
  if (!question.proposedName.empty()) dialog.selectFile(Text(question.proposedName));
}

bool MayReplace(const QString& file, QWidget* parent) {
  return QMessageBox::warning(parent, "Replace file", Text(ReplaceQuestion(file.toStdString())),
                              QMessageBox::Yes | QMessageBox::No,
                              QMessageBox::No) == QMessageBox::Yes;
}

bool MayWrite(const FileDialog& question, const QString& file, QWidget* parent) {
  const std::string refusal = NameRefusal(question, file.toStdString());
  if (!refusal.empty()) QMessageBox::warning(parent, "File name", Text(refusal));
  return refusal.empty() &&
         (!question.AsksBeforeReplacing() || !QFileInfo::exists(file) || MayReplace(file, parent));
}

QString Chosen(const QFileDialog& dialog, const FileDialog& question) {
  QString file = dialog.selectedFiles().value(0);
  if (!question.writesFile) return file;
  return Text(WithSuffix(file.toStdString(), dialog.defaultSuffix().toStdString()).string());
}

constexpr int kPatience = 250;  // ms; some desktops never give the focus back

class InputDropper : public QObject {
 public:
  InputDropper() { QCoreApplication::instance()->installEventFilter(this); }

  bool eventFilter(QObject*, QEvent* event) override {
    switch (event->type()) {
      case QEvent::MouseButtonPress:
      case QEvent::MouseButtonRelease:
      case QEvent::MouseButtonDblClick:
      case QEvent::Wheel:
      case QEvent::KeyPress:
      case QEvent::KeyRelease:
      case QEvent::Shortcut:
      case QEvent::ShortcutOverride:
      case QEvent::ContextMenu:
      case QEvent::TouchBegin:
      case QEvent::TouchUpdate:
      case QEvent::TouchEnd:
      case QEvent::DragEnter:
      case QEvent::DragMove:
      case QEvent::Drop:
        return true;
      default:
        return false;
    }
  }
};

}  // namespace

void Settle() {
  const InputDropper dropper;
  QGuiApplication::sync();
}

// The manager of the windows takes the dialog's frame away in its own time, and only then is the
// window told to paint what was behind it. To ask for the focus meanwhile may lose it.
void SettleInFront(const QWidget& window) {
  const InputDropper dropper;
  const QDeadlineTimer deadline(kPatience);
  while (!window.isActiveWindow() && !deadline.hasExpired())
    QCoreApplication::processEvents(QEventLoop::AllEvents, kPatience / 10);
  QGuiApplication::sync();
}

std::optional<std::filesystem::path> AskForFile(const FileDialog& question, QWidget* window) {
  const QString folder = Text(question.initialFolder.string());
  QFileDialog dialog(window, Text(question.title),
                     QDir(folder).exists() ? folder : QDir::homePath());
  SetUp(dialog, question);
  while (dialog.exec() == QDialog::Accepted) {
    const QString file = Chosen(dialog, question);
    if (question.writesFile && !MayWrite(question, file, window)) continue;
    SettleInFront(*window);
    return file.toStdString();
  }
  return std::nullopt;
}

}  // namespace marovia
