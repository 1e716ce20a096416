// Prints how long the window takes from its making to its first picture, from Go to the finished
// picture, and how much of that is its own: the library's run of the same image in the same process
// and the writing of the file taken off. In milliseconds, medians of alternating runs; the window's
// own in processor time, which other programs on the machine do not lengthen.
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
#include <ctime>
#include <vector>

#include "files/output_file.h"
#include "window/main_window.h"

namespace {

constexpr int kRuns = 21;

double Median(std::vector<double> times) {
  std::ranges::sort(times);
  return times[times.size() / 2];
}

double Milliseconds(const QElapsedTimer& timer) {
  return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

// In milliseconds, of this thread: the file question leaves others, which read folders.
double ProcessorTime() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return 1e3 * static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e6;
}

struct GoTimes {
  double fromAnswer;  // of the question, whose window has to go away
  double processor;   // from the end of the question
};

// Presses Go and answers its question.
GoTimes TimeOfGo(marovia::MainWindow& window, const QString& file) {
  QElapsedTimer answered;
  double ended = 0;
  QTimer::singleShot(0, [&] {
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    // The youngest child goes last, after the folder's model and all that shows it.
    QObject::connect(marovia::Make<QObject>(dialog), &QObject::destroyed,
                     [&ended] { ended = ProcessorTime(); });
    dialog->findChild<QLineEdit*>("fileNameEdit")->setText(file);
    answered.start();
    dialog->findChild<QPushButton*>()->setFocus();
    QMetaObject::invokeMethod(dialog, "accept");
  });
  window.findChild<QPushButton*>("cmdBegin(0)")->click();
  QApplication::processEvents();
  return {Milliseconds(answered), ProcessorTime() - ended};
}

// The same runs by the library, and the writing of the file alone.
struct LibraryTimes {
  double compress;
  double decompress;
  double write;
};

LibraryTimes TimesOfLibrary(const marovia::Image& image, const QString& file) {
  const double started = ProcessorTime();
  const marovia::Bytes bytes =
      marovia::Compress(image, {.kind = marovia::FileKind::kAwb,
                                .wavelet = marovia::WaveletKind::kInteger53,
                                .levels = 4,
                                .rate = 0.25})
          .file;
  const double compressed = ProcessorTime();
  marovia::OutputFile(file.toStdString(), true).Put(bytes);
  const double written = ProcessorTime();
  const marovia::DecompressResult decoded =
      marovia::Decompress(bytes, marovia::FileKind::kAwb, {.rate = 0.25});
  return {compressed - started, ProcessorTime() - written, written - compressed};
}

}  // namespace

int main(int argc, char** argv) {
  QElapsedTimer started;
  started.start();
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  const QApplication app(argc, argv);
  const QTemporaryDir folder;
  QDir::setCurrent(folder.path());
  const auto made = marovia::MakeMainWindow(true);
  marovia::MainWindow& window = *made;
  window.show();
  window.OpenFiles({MAROVIA_ROOT "/Images/camera.pgm"});
  while (window.windowHandle() == nullptr || !window.windowHandle()->isExposed())
    QApplication::processEvents();
  QApplication::processEvents();
  std::printf("start to first picture: %.0f ms\n", Milliseconds(started));

  std::vector<double> compressions, decompressions, ownOfCompress, ownOfDecompress;
  for (int i = 0; i < kRuns; ++i) {
    const QString file = folder.filePath(QString("%1.awb").arg(i));
    window.findChild<QAction*>("mnuCompress")->trigger();
    const GoTimes compress = TimeOfGo(window, file);
    const GoTimes decompress = TimeOfGo(window, file);
    const LibraryTimes library =
        TimesOfLibrary(*window.Form().state.SourceImage, folder.filePath("library.awb"));
    compressions.push_back(compress.fromAnswer);
    decompressions.push_back(decompress.fromAnswer);
    ownOfCompress.push_back(compress.processor - library.compress - library.write);
    ownOfDecompress.push_back(decompress.processor - library.decompress);
  }
  std::printf("Go, compress: %.1f ms; the window's own %.1f ms of processor time\n",
              Median(compressions), Median(ownOfCompress));
  std::printf("Go, decompress: %.1f ms; the window's own %.1f ms of processor time\n",
              Median(decompressions), Median(ownOfDecompress));
  return 0;
}
