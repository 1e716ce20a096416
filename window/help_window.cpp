#include "window/tool_window.h"

namespace marovia {
namespace {

class HelpWindow : public ToolWindow {
 public:
  HelpWindow(const QString& file, QWidget* parent)
      : ToolWindow("Help", "Marovia Help", {760, 640}, parent) {
    setCentralWidget(page_);
    page_->setObjectName("HelpPage");
    page_->setAccessibleName("Help page");
    page_->document()->setDocumentMargin(16);
    QAction* back = AddTool("Back", QKeySequence::Back, page_, &QTextBrowser::backward);
    QAction* forward = AddTool("Forward", QKeySequence::Forward, page_, &QTextBrowser::forward);
    AddTool("Contents", QKeySequence("Alt+Home"), page_, &QTextBrowser::home);
    connect(page_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(page_, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    for (QAction* action : {back, forward}) action->setEnabled(false);
    AddSearch();
    if (QFile::exists(file))
      page_->setSource(QUrl::fromLocalFile(file), QTextDocument::HtmlResource);
    else
      page_->setPlainText("The help page is not there: " + file);
  }

  void ShowContents() {
    page_->home();
    page_->setFocus();
    show();
    raise();
    activateWindow();
  }

 private:
  void AddSearch() {
    auto* sought = AddField<QLineEdit>("HelpSearch", "Search the help");
    sought->setPlaceholderText("Search");
    sought->setClearButtonEnabled(true);
    // From the top again after the last place.
    const auto find = [this, sought] {
      if (sought->text().isEmpty() || page_->find(sought->text())) return;
      page_->moveCursor(QTextCursor::Start);
      page_->find(sought->text());
    };
    AddTool("Find Next", QKeySequence::FindNext, find);
    connect(sought, &QLineEdit::returnPressed, find);
    Make<QShortcut>(QKeySequence::Find, this, [sought] { sought->setFocus(); });
  }

  QTextBrowser* page_ = Make<QTextBrowser>();
};

}  // namespace

void ShowHelpWindow(const std::filesystem::path& file, QWidget* parent) {
  auto* help = dynamic_cast<HelpWindow*>(parent->findChild<QWidget*>("Help"));
  if (help == nullptr) help = Make<HelpWindow>(Text(file.string()), parent);
  help->ShowContents();
}

}  // namespace marovia
