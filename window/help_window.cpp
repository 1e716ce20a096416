#include "window/help_window.h"

#include <QFile>
#include <QLineEdit>
#include <QShortcut>
#include <QTextBrowser>
#include <QToolBar>

#include "window/make.h"

namespace marovia {

HelpWindow::HelpWindow(QWidget* parent)
    : QMainWindow(parent), page_(&Make<QTextBrowser>()), sought_(&Make<QLineEdit>()) {
  setObjectName("Help");
  setWindowTitle("Marovia Help");
  resize(760, 640);
  page_->setObjectName("HelpPage");
  page_->setAccessibleName("Help page");
  page_->document()->setDocumentMargin(16);
  setCentralWidget(page_);

  sought_->setObjectName("HelpSearch");
  sought_->setAccessibleName("Search the help");
  sought_->setPlaceholderText("Search");
  sought_->setClearButtonEnabled(true);
  auto& bar = Make<QToolBar>("Navigation");
  bar.setMovable(false);
  addToolBar(&bar);
  const auto add = [&bar](const char* name, const QString& text, const QKeySequence& keys) {
    QAction* action = bar.addAction(text);
    action->setObjectName(name);
    action->setShortcut(keys);
    action->setToolTip(text + " (" + keys.toString(QKeySequence::NativeText) + ")");
    return action;
  };
  QAction* back = add("HelpBack", "Back", QKeySequence::Back);
  QAction* forward = add("HelpForward", "Forward", QKeySequence::Forward);
  QAction* contents = add("HelpContents", "Contents", QKeySequence("Alt+Home"));
  bar.addSeparator();
  bar.addWidget(sought_);
  QAction* next = add("HelpNext", "Find Next", QKeySequence("F3"));

  for (QAction* action : {back, forward}) action->setEnabled(false);
  connect(page_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
  connect(page_, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
  connect(back, &QAction::triggered, page_, &QTextBrowser::backward);
  connect(forward, &QAction::triggered, page_, &QTextBrowser::forward);
  connect(contents, &QAction::triggered, page_, &QTextBrowser::home);
  connect(next, &QAction::triggered, this, &HelpWindow::FindNext);
  connect(sought_, &QLineEdit::returnPressed, this, &HelpWindow::FindNext);
  connect(&Make<QShortcut>(QKeySequence::Find, this), &QShortcut::activated, sought_,
          [this] { sought_->setFocus(); });
  connect(&Make<QShortcut>(QKeySequence::Cancel, this), &QShortcut::activated, this,
          &QWidget::close);
}

void HelpWindow::ShowContents(const std::filesystem::path& file) {
  const QString name = QString::fromStdString(file.string());
  if (QFile::exists(name)) {
    page_->setSource(QUrl::fromLocalFile(name), QTextDocument::HtmlResource);
    page_->home();
  } else {
    page_->setPlainText("The help page is not there: " + name);
  }
  show();
  raise();
  activateWindow();
  page_->setFocus();
}

// Goes on from the top after the last place.
void HelpWindow::FindNext() {
  if (sought_->text().isEmpty() || page_->find(sought_->text())) return;
  page_->moveCursor(QTextCursor::Start);
  page_->find(sought_->text());
}

}  // namespace marovia
