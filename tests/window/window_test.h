// The real window on a display that is not shown, a folder of its own, and the hands of a user.
#pragma once

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QtTest>

#include "tests/support/testing.h"
#include "window/main_window.h"

namespace marovia::test {

class WindowTest : public testing::Test {
 protected:
  WindowTest();
  ~WindowTest() override;

  template <class T>
  T& Find(const char* name) {
    return FindIn<T>(window, name);
  }
  template <class T>
  static T& FindIn(const QWidget& parent, const char* name) {
    auto* found = parent.findChild<T*>(name);
    if (found == nullptr) throw std::runtime_error(std::string("no widget ") + name);
    return *found;
  }

  [[nodiscard]] QString Path(const QString& name) const { return folder.filePath(name); }
  [[nodiscard]] const frmMain& Form() const { return window.Form(); }
  QString ReportText() { return Find<QPlainTextEdit>("Report").toPlainText(); }

  void Click(const char* name) { QTest::mouseClick(&Find<QWidget>(name), Qt::LeftButton); }
  void Menu(const char* name) { Find<QAction>(name).trigger(); }
  void Type(const char* name, const QString& text);
  // Types the name into the next file question; a question whether to replace gets the answer.
  // What the question showed is kept in `filters`, `asked` tells whether it was a replacement.
  void AnswerFileQuestion(const QString& name, bool replace = true);

  // Writes the image as source.bmp and loads it through the menu and the file question.
  void Load(const Image& image);
  // Method and coding by their number in brackets.
  void Choose(const std::string& number, const QString& rate);
  // Presses Go, and answers its question.
  void GoUnder(const QString& name, bool replace = true) {
    AnswerFileQuestion(Path(name), replace);
    Click("cmdBegin(0)");
  }
  void DragPicture(QPoint from, QPoint to);

  QWidget& Source() { return Find<QWidget>("GraphBox"); }
  QWidget& Reconstruction() { return Find<QWidget>("GraphBoxRec"); }

  QTemporaryDir folder;
  QStringList filters;
  bool asked = false;

 private:
  std::unique_ptr<MainWindow> made_ = MakeMainWindow(true);

 protected:
  MainWindow& window = *made_;

 private:
  QTimer answerer_;
};

// The screen pixel in the middle of a coordinate's.
QPoint PixelOf(const QWidget& picture, QPoint coordinate);
// That every screen pixel of the picture is that of its coordinate in the raster.
void ExpectShows(QWidget& picture, const Image& raster);

}  // namespace marovia::test
