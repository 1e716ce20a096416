#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QTemporaryDir>
#include <QTimer>
#include <iostream>

#include "marovia/version.h"

#include "window/main_window.h"

namespace {

struct StartOptions {
  bool padToFit = true;
  QStringList files;  // absolute, since the current folder changes
};

StartOptions ReadCommandLine(const QApplication& app) {
  QCommandLineParser parser;
  parser.setApplicationDescription("Wavelet image codec with a region of interest.");
  parser.addHelpOption();
  parser.addVersionOption();
  const QCommandLineOption pad(
      "pad", "Pad sides to what the transform needs: auto (the default) or never.", "when", "auto");
  parser.addOption(pad);
  parser.addPositionalArgument("file", "Images to load (pgm, bmp), compressed files to decompress.",
                               "[file...]");
  parser.process(app);
  const QString when = parser.value(pad);
  if (when != "auto" && when != "never") {
    std::cerr << "marovia-window: --pad is auto or never\n";
    std::exit(2);  // NOLINT(concurrency-mt-unsafe): as the parser itself ends the program
  }
  StartOptions options{.padToFit = when == "auto", .files = {}};
  for (const QString& name : parser.positionalArguments())
    options.files << QFileInfo(name).absoluteFilePath();
  return options;
}

int Run(const StartOptions& options) {
  marovia::MainWindow window(options.padToFit);
  window.show();
  QTimer::singleShot(0, &window, [&] {
    for (const QString& file : options.files) window.OpenFile(file.toStdString());
  });
  return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  const QApplication app(argc, argv);
  QApplication::setApplicationName("marovia-window");
  QApplication::setApplicationVersion(marovia::kVersion);
  QApplication::setDesktopFileName("marovia");
  QApplication::setWindowIcon(QIcon::fromTheme(
      "marovia", QIcon(QDir(QApplication::applicationDirPath()).filePath("marovia.png"))));
  const StartOptions options = ReadCommandLine(app);

  // At its end the form deletes temporary files of the current folder, which therefore is one that
  // holds nobody's.
  const QTemporaryDir folder;
  if (!folder.isValid() || !QDir::setCurrent(folder.path())) {
    std::cerr << "marovia-window: " << folder.errorString().toStdString() << '\n';
    return 1;
  }
  const int status = Run(options);
  QDir::setCurrent(QDir::rootPath());
  return status;
}
