// The program's window: the form's controls as widgets, and its desktop.
#pragma once

#include <filesystem>
#include <memory>

#include "app/picture_place.h"
#include "window/binds.h"

namespace marovia {

// The panel at the right: what the chosen mode offers, or how to choose one.
QWidget* MakeSidePanel(Binds& binds);

// A widget that shows one of the form's pictures, and tells the form what mouse and keys do on it.
QWidget* MakePicture(Binds& binds, const PictureBox& picture);
// In pixels of the screen.
PicturePlace PlaceOfPicture(const QWidget& widget);

class MainWindow : public QMainWindow {
 public:
  [[nodiscard]] virtual const frmMain& Form() const = 0;
  // As if it were dropped.
  virtual void OpenFile(const std::filesystem::path& file) = 0;
};

// Its end deletes temporary files of the current folder.
std::unique_ptr<MainWindow> MakeMainWindow(bool padToFit);

}  // namespace marovia
