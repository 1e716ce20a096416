// Source and reconstruction at full resolution beside their difference.
#pragma once

#include <QImage>
#include <QMainWindow>
#include <optional>

#include "marovia/image.h"

#include "app/shared_value.h"

class QLabel;
class QSlider;
class QToolBar;

namespace marovia {

class ComparePane;

class Viewer : public QMainWindow {
 public:
  // Either may be empty. Images of two shapes have no difference; then `prefersSource` tells which
  // one is shown.
  Viewer(SharedValue<Image> source, SharedValue<Image> reconstruction, bool prefersSource,
         QWidget* parent);

 private:
  void MakeBar();
  static QSlider& AddSlider(QToolBar& bar, const char* name, const QString& caption);
  void MakePanes(bool prefersSource);
  void ShowDifference(int gain);
  void SetZoom(double zoom);
  void ReadOut(std::optional<QPoint> place);

  SharedValue<Image> source_;
  SharedValue<Image> reconstruction_;
  bool comparable_;
  QImage difference_;
  double zoom_ = 1;
  ComparePane* wipe_;
  ComparePane* differencePane_;
  QSlider* splitSlider_ = nullptr;
  QLabel* zoomLabel_;
  QLabel* gainLabel_;
  QLabel* readout_;
};

}  // namespace marovia
