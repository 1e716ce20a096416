#include "window/tool_window.h"

namespace marovia {
namespace {

class HelpWindow : public ToolWindow {
 public:
  explicit HelpWindow(QWidget* parent) : ToolWindow("Help", "Marovia Help", parent) {
    resize(760, 640);
    page_->setObjectName("HelpPage");
    page_->setAccessibleName("Help page");
    page_->document()->setDocumentMargin(16);
    setCentralWidget(page_);
    QAction* back = AddTool("Back", QKeySequence::Back, page_, &QTextBrowser::backward);
    QAction* forward = AddTool("Forward", QKeySequence::Forward, page_, &QTextBrowser::forward);
    AddTool("Contents", QKeySequence("Alt+Home"), page_, &QTextBrowser::home);
    connect(page_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(page_, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    for (QAction* action : {back, forward}) action->setEnabled(false);
    MakeSearch();
  }

  void ShowContents(const std::filesystem::path& file) {
    const auto name = QString::fromStdString(file.string());
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

 private:
  void MakeSearch() {
    auto* sought = Make<QLineEdit>();
    sought->setObjectName("HelpSearch");
    sought->setAccessibleName("Search the help");
    sought->setPlaceholderText("Search");
    sought->setClearButtonEnabled(true);
    bar_->addSeparator();
    bar_->addWidget(sought);
    const auto find = [this, sought] { FindNext(sought->text()); };
    AddTool("Find Next", QKeySequence::FindNext, find);
    connect(sought, &QLineEdit::returnPressed, this, find);
    connect(Make<QShortcut>(QKeySequence::Find, this), &QShortcut::activated, sought,
            [sought] { sought->setFocus(); });
  }

  // Goes on from the top after the last place.
  void FindNext(const QString& text) {
    if (text.isEmpty() || page_->find(text)) return;
    page_->moveCursor(QTextCursor::Start);
    page_->find(text);
  }

  QTextBrowser* page_ = Make<QTextBrowser>();
};

}  // namespace

void ShowHelpWindow(const std::filesystem::path& file, QWidget* parent) {
  auto* help = dynamic_cast<HelpWindow*>(parent->findChild<QWidget*>("Help"));
  if (help == nullptr) help = Make<HelpWindow>(parent);
  help->ShowContents(file);
}

}  // namespace marovia
