// Ties widgets to the form's controls: how each kind is shown, how an edit is stored, and which
// handler runs then.
#pragma once

#include <functional>
#include <unordered_map>
#include <vector>

#include "app/control_kinds.h"

class QAction;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QObject;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class QString;
class QWidget;

namespace marovia {

class PictureView;

// A widget gets its control's name as objectName. Controls and widgets must outlive their edits.
class Binds {
 public:
  using Handler = std::function<void()>;

  void Bind(QAction& action, const MenuItem& item, const Handler& handler);
  void Bind(QPushButton& button, const Button& control, const Handler& handler);
  void Bind(QLabel& label, const TextLabel& control);
  void Bind(QGroupBox& box, const FrameBox& control);
  // The handler stores the choice as well, since it concerns the options beside this one.
  void Bind(QRadioButton& button, const OptionButton& control, const Handler& handler);
  void Bind(QCheckBox& box, CheckBox& control);
  void Bind(QLineEdit& edit, TextBox& control);
  void Bind(QPlainTextEdit& edit, const TextBox& control);
  void Bind(QComboBox& box, ComboBox& control, const Handler& handler);
  void Bind(PictureView& view, const PictureBox& control);

  // Shown with the controls, whatever it shows.
  void Also(const Handler& show) { shows_.push_back(show); }
  // Runs what an event asks for; any control may differ afterwards.
  void Run(const Handler& handler);
  void ShowAll();
  // At once, in the middle of a handler.
  void Repaint(const Control& control);
  void SetFocus(const Control& control);

 private:
  struct Shown {
    QWidget* widget;
    Handler show;
  };
  void Add(QWidget& widget, const Control& control, const Handler& show);

  std::unordered_map<const Control*, Shown> widgets_;
  std::vector<Handler> shows_;
};

}  // namespace marovia
