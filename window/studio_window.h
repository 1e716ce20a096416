// The window of the studio: its menus and bars (studio_menus.cpp), and what they do (studio.cpp).
#pragma once

#include <QtWidgets>
#include <functional>

#include "app/desktop.h"
#include "window/make.h"
#include "window/session.h"
#include "window/stage.h"
#include "window/studio_panel.h"

namespace marovia {

inline constexpr int kSliderSteps = 2000;
inline constexpr double kFirstRate = 0.5;

// What is remembered from one start to the next.
inline QSettings Settings() {
  return QSettings("marovia", "studio");
}

class Studio : public QMainWindow {
  Q_DECLARE_TR_FUNCTIONS(Studio)

 public:
  Studio();

  void OpenFile(const QString& file);
  void OpenRequest(const StudioRequest& request);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override { Take(event->mimeData()); }

 private:
  using Slot = std::function<void()>;

  QAction* Add(QMenu* menu, const QString& text, const QKeySequence& keys, const Slot& slot);
  void MakeFileMenu();
  void MakeEditMenu();
  void MakeViewMenu();
  void MakeHelpMenu();
  void MakeBar();
  QWidget* RateBar();
  void Connect();
  void Restore();

  Recipe RecipeWithoutRegion();
  void AskOpen();
  void ListRecent();
  void Remember(const QString& file);
  void Take(const QMimeData* data);
  QString AskSave(const QString& title, const QString& filter, const QString& name);
  [[nodiscard]] QString FileName() const;
  void SaveFile();
  void SavePicture();
  void DragFile();
  void Write(const QString& file, const std::function<void()>& write);

  void SetBytes(std::int64_t bytes);
  void SetView(View view);
  void ShowMaster();
  void ShowPicture();
  void Tell(const QString& text) { statusBar()->showMessage(text, 8000); }

  Session session_;
  Stage* stage_ = Make<Stage>();
  StudioPanel* panel_ = Make<StudioPanel>(session_);
  QSlider* slider_ = Make<QSlider>(Qt::Horizontal);
  QLabel* least_ = Make<QLabel>();
  QLabel* most_ = Make<QLabel>();
  QToolBar* bar_ = addToolBar(tr("View"));
  QActionGroup* views_ = Make<QActionGroup>(this);
  QSpinBox* gain_ = Make<QSpinBox>();
  QLabel* zoom_ = Make<QLabel>();
  QLabel* readout_ = Make<QLabel>();
  QProgressBar* progress_ = Make<QProgressBar>();
  QMenu* recent_ = nullptr;
  QList<QAction*> needPicture_;
  QTemporaryDir dragged_;
  View view_ = View::kPicture;
  double rate_ = kFirstRate;  // chosen last
};

}  // namespace marovia
