// The program's window: the form's controls as widgets, and its desktop.
#pragma once

#include <filesystem>
#include <memory>

#include "app/viewing.h"
#include "window/binds.h"

namespace marovia {

// The panel at the right: what the chosen mode offers, or how to choose one.
QWidget* MakeSidePanel(Binds& binds);

// A widget that shows one of the form's pictures, and tells the form what mouse and keys do on it.
QWidget* MakePicture(Binds& binds, const PictureBox& picture);
// In pixels of the screen.
PicturePlace PlaceOfPicture(const QWidget& widget);

// The file that the user chose; one that is about to be written has a name that its kind may have,
// and is not there or may be replaced.
std::optional<std::filesystem::path> AskForFile(const FileDialog& question, QWidget* window);

// Paints what has come into view, and drops all mouse and keyboard input until now.
void Settle();
// The same once the window has come back to the front from behind a dialog.
void SettleInFront(const QWidget& window);

class MainWindow : public QMainWindow {
 public:
  [[nodiscard]] virtual const frmMain& Form() const = 0;
  // As if they were dropped.
  virtual void OpenFiles(const std::vector<std::filesystem::path>& files) = 0;
};

// Its end deletes temporary files of the current folder.
std::unique_ptr<MainWindow> MakeMainWindow(bool padToFit);

}  // namespace marovia
