// Ties widgets to the form's controls: how each kind is shown, and how an edit or a click gets to
// the form.
#pragma once

#include <functional>
#include <unordered_map>
#include <vector>

#include "app/frm_main.h"
#include "window/make.h"

namespace marovia {

// A widget gets its control's name as objectName. It must not outlive the form.
class Binds {
 public:
  using Handler = std::function<void()>;

  explicit Binds(frmMain& form) : form_(form) {}

  frmMain& Form() { return form_; }

  // A new widget for a control.
  template <class Widget, class... Bound>
  Widget* New(Bound&&... bound) {
    auto* widget = Make<Widget>();
    Bind(widget, std::forward<Bound>(bound)...);
    return widget;
  }
  void Bind(QLabel* label, const TextLabel& control) { AddCaption(label, "text", control); }
  void Bind(QLabel* label, const char* name, std::string (frmMain::*text)() const);
  void Bind(QGroupBox* box, const FrameBox& control) { AddCaption(box, "title", control); }
  void Bind(QAction* action, const MenuItem& item);
  // The mark is that of an option or a check box.
  void Bind(QAbstractButton* button, const CaptionedControl& control, const bool* mark = nullptr);
  void Bind(QLineEdit* edit, TextBox& control);
  void Bind(QPlainTextEdit* edit, const TextBox& control);
  void Bind(QComboBox* box, ComboBox& control);
  void Add(QObject* widget, const Control& control, const Handler& show);
  // Shown with the controls, whatever it shows.
  void Also(const Handler& show) { shows_.push_back(show); }

  // Runs what an event asks for; any control may differ afterwards.
  void Run(const Handler& handler);
  void Click(const Control& control);
  void ShowAll();
  // At once, in the middle of a handler.
  void Repaint(const Control& control);
  void SetFocus(const Control& control);

 private:
  void AddCaption(QObject* widget, const char* property, const CaptionedControl& control);

  frmMain& form_;
  std::vector<Handler> shows_;
  std::unordered_map<const Control*, std::pair<QWidget*, Handler>> widgets_;
};

}  // namespace marovia
