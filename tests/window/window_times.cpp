// Prints how long the window takes from its making to its first picture, and from Go to the
// finished picture, in milliseconds: the median of some runs.
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "window/main_window.h"

namespace {

double Median(std::vector<double> times) {
  std::ranges::sort(times);
  return times[times.size() / 2];
}

double Milliseconds(const QElapsedTimer& timer) {
  return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

// Presses Go and answers its question; the time runs from the answer.
double TimeOfGo(marovia::MainWindow& window, const QString& file) {
  QElapsedTimer timer;
  QTimer::singleShot(0, [&] {
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    dialog->findChild<QLineEdit*>("fileNameEdit")->setText(file);
    timer.start();
    dialog->findChild<QPushButton*>()->setFocus();
    QMetaObject::invokeMethod(dialog, "accept");
  });
  window.findChild<QPushButton*>("cmdBegin(0)")->click();
  QApplication::processEvents();
  return Milliseconds(timer);
}

}  // namespace

int main(int argc, char** argv) {
  QElapsedTimer started;
  started.start();
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  const QApplication app(argc, argv);
  const QTemporaryDir folder;
  QDir::setCurrent(folder.path());
  marovia::MainWindow window(true);
  window.show();
  window.OpenFile(MAROVIA_ROOT "/Images/camera.pgm");
  while (window.windowHandle() == nullptr || !window.windowHandle()->isExposed())
    QApplication::processEvents();
  QApplication::processEvents();
  std::printf("start to first picture: %.0f ms\n", Milliseconds(started));

  std::vector<double> compressions;
  std::vector<double> decompressions;
  for (int i = 0; i < 9; ++i) {
    const QString file = folder.filePath(QString("%1.awb").arg(i));
    window.findChild<QAction*>("mnuCompress")->trigger();
    compressions.push_back(TimeOfGo(window, file));
    decompressions.push_back(TimeOfGo(window, file));
  }
  std::printf("Go, compress: %.1f ms\nGo, decompress: %.1f ms\n", Median(compressions),
              Median(decompressions));
  return 0;
}
