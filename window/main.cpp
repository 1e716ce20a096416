#include <iostream>

#include "marovia/version.h"

#include "window/main_window.h"
#include "window/studio.h"

namespace {

int Fail(const QString& why, int status) {
  std::cerr << "marovia-window: " << why.toStdString() << '\n';
  return status;
}

// At its end the form deletes temporary files of the current folder, which therefore is one that
// holds nobody's.
int Run(bool padToFit, const std::vector<std::filesystem::path>& files) {
  const QTemporaryDir folder;
  if (!folder.isValid() || !QDir::setCurrent(folder.path())) return Fail(folder.errorString(), 1);
  const auto window = marovia::MakeMainWindow(padToFit);
  window->show();
  QTimer::singleShot(0, window.get(), [&] {
    if (!files.empty()) window->OpenFiles(files);
  });
  return QApplication::exec();
}

int RunStudio(const QStringList& files) {
  marovia::ShowStudio();
  if (!files.empty()) marovia::OpenInStudio(QFileInfo(files.front()).absoluteFilePath());
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

  QCommandLineParser parser;
  parser.setApplicationDescription("Wavelet image codec with a region of interest.");
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addOption({"pad", "Pad sides to what the transform needs: auto (the default) or never.",
                    "when", "auto"});
  parser.addOption({"studio", "Open the studio, with the first file, in place of the form."});
  parser.addPositionalArgument("file", "Images to load (pgm, bmp), compressed files to decompress.",
                               "[file...]");
  parser.process(app);
  const QString pad = parser.value("pad");
  if (pad != "auto" && pad != "never") return Fail("--pad is auto or never", 2);
  if (parser.isSet("studio")) return RunStudio(parser.positionalArguments());
  std::vector<std::filesystem::path> files;
  for (const QString& file : parser.positionalArguments())
    files.push_back(QFileInfo(file).filesystemAbsoluteFilePath());
  return Run(pad == "auto", files);
}
