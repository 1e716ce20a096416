// The program's window: the form's controls as widgets, and its desktop.
#pragma once

#include <QMainWindow>

#include "app/frm_main.h"
#include "window/binds.h"

namespace marovia {

class HelpWindow;

class MainWindow : public QMainWindow, private Desktop {
 public:
  explicit MainWindow(bool padToFit);
  // The unload deletes temporary files of the current folder.
  ~MainWindow() override;
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;

  [[nodiscard]] const frmMain& Form() const { return form_; }
  // As if it were dropped.
  void OpenFile(const std::filesystem::path& file);

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  std::optional<std::filesystem::path> ChooseFile(const FileDialog& dialog) override;
  void SetPointer(Pointer pointer) override;
  void Repaint(const Control& control) override;
  void SetFocus(const Control& control) override;
  void ShowHelp(const std::filesystem::path& file, int command) override;
  [[nodiscard]] std::filesystem::path ProgramFolder() const override;
  [[nodiscard]] UnitsPerPixel PictureUnits() const override { return {}; }

  void MakeMenus();
  void MakeMiddle();
  QLayout& Pictures();
  QLayout& SourcePicture();
  QLayout& ReconstructedPicture();
  QWidget& DisplayChoice();
  QWidget& ReportBox();
  void OpenViewer(bool prefersSource);

  frmMain form_;
  Binds binds_;
  HelpWindow* help_ = nullptr;
};

}  // namespace marovia
