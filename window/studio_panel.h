// What stands beside the studio's picture: numbers to read and to set, the curve, how it is coded,
// the region.
#pragma once

#include <QCoreApplication>
#include <QWidget>
#include <functional>

#include "window/session.h"

class QAbstractButton;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QSlider;
class QSpinBox;

namespace marovia {

class CurveView;

class StudioPanel : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(StudioPanel)

 public:
  // The session must outlive the panel.
  explicit StudioPanel(Session& session);

  // What the user set.
  std::function<void(std::int64_t bytes)> onBytes;
  std::function<void(const Recipe& recipe)> onRecipe;
  std::function<void(bool drawing)> onDraw;

  // How the next source is coded.
  [[nodiscard]] const Recipe& TheRecipe() const { return recipe_; }
  void SetRecipe(const Recipe& recipe);
  void SetRegion(const std::optional<Region>& region);
  // What the session has now.
  void ShowMaster();
  void ShowBytes();
  void ShowMeasures();
  void ShowCurve();

 private:
  QWidget* Figures();
  QWidget* Coding();
  QWidget* RegionTools();
  QDoubleSpinBox* Number(const char* name, const QString& spoken, const QString& unit, int digits,
                         std::function<void(double)> set);
  void TakeRecipe();
  void ShowRegion();

  Session& session_;
  Recipe recipe_;
  QDoubleSpinBox* bytes_;
  QDoubleSpinBox* rate_;
  QDoubleSpinBox* ratio_;
  QDoubleSpinBox* psnr_;
  QLabel* similarity_;
  CurveView* curve_;
  QComboBox* kind_;
  QComboBox* wavelet_;
  QSpinBox* levels_;
  QLabel* cost_;
  QWidget* coding_;
  QWidget* region_;
  QAbstractButton* draw_;
  QAbstractButton* clear_;
  QSlider* share_;
  QLabel* inRegion_;
};

}  // namespace marovia
