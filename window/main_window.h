// The program's window: the form's controls as widgets, and its desktop.
#pragma once

#include "app/frm_main.h"
#include "window/binds.h"

namespace marovia {

// The panel at the right: what the chosen mode offers, or how to choose one.
QWidget* MakeSidePanel(Binds& binds);

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
  std::optional<std::filesystem::path> ChooseFile(const FileDialog& question) override;
  void SetPointer(Pointer pointer) override;
  void Repaint(const Control& control) override { binds_.Repaint(control); }
  void SetFocus(const Control& control) override { binds_.SetFocus(control); }
  void ShowHelp(const std::filesystem::path& file, int command) override;
  [[nodiscard]] std::filesystem::path ProgramFolder() const override;
  [[nodiscard]] UnitsPerPixel PictureUnits() const override { return {}; }

  void MakeMenus();
  QWidget* Pictures();
  QWidget* CompareButton();
  QWidget* ReportBox();
  Binds::Handler OpenViewer(bool prefersSource);

  frmMain form_{*this};
  Binds binds_{form_};
};

}  // namespace marovia
