#pragma once

#include <QMainWindow>
#include <filesystem>

class QLineEdit;
class QTextBrowser;

namespace marovia {

// The help page with a line to search it, back and forward.
class HelpWindow : public QMainWindow {
 public:
  explicit HelpWindow(QWidget* parent);

  // From the contents at its top.
  void ShowContents(const std::filesystem::path& file);

 private:
  void FindNext();

  QTextBrowser* page_;
  QLineEdit* sought_;
};

}  // namespace marovia
