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

  // `afterwards` runs after every handler of an event.
  Binds(frmMain& form, Handler afterwards) : form_(form), afterwards_(std::move(afterwards)) {}

  frmMain& Form() { return form_; }

  // A new widget for a control.
  template <class Widget, class... Bound>
  Widget* New(Bound&&... bound) {
    auto* widget = Make<Widget>();
    Bind(widget, std::forward<Bound>(bound)...);
    return widget;
  }

  void Bind(QLabel* label, const TextLabel& control) { AddCaption(label, "text", control); }
  void Bind(QGroupBox* box, const FrameBox& control) { AddCaption(box, "title", control); }
  void Bind(QLabel* label, const char* name, std::string (frmMain::*text)() const) {
    label->setObjectName(name);
    Also([this, label, text] { label->setText(Text((form_.*text)())); });
  }

  void Bind(QAction* action, const MenuItem& item) {
    AddCaption(action, "text", item);
    action->setShortcut(Text(item.keys));
    QObject::connect(action, &QAction::triggered, [this, &item] { Click(item); });
  }

  // The mark is that of an option or a check box.
  void Bind(QAbstractButton* button, const CaptionedControl& control, const bool* mark = nullptr) {
    AddCaption(button, "text", control);
    if (mark != nullptr) Also([button, mark] { ShowMark(*button, *mark); });
    QObject::connect(button, &QAbstractButton::clicked, [this, &control] { Click(control); });
  }

  // A text that is as it should be is left alone, with the cursor where it stands.
  void Bind(QLineEdit* edit, TextBox& control) {
    Add(edit, control, [edit, &control] {
      if (edit->text() == Text(control.text)) return;
      edit->setText(Text(control.text));
      edit->setCursorPosition(0);
    });
    QObject::connect(edit, &QLineEdit::textEdited, [this, &control](const QString& text) {
      Run([&] { control.text = text.toStdString(); });
    });
  }

  // A run adds line after line: only what is new is laid out. The form selects what was added so
  // that it comes into view; the end of the selection does that without marking the text.
  void Bind(QPlainTextEdit* edit, const TextBox& control) {
    Add(edit, control, [edit, &control, shown = std::string()]() mutable {
      if (shown == control.text) return;
      if (!control.text.starts_with(shown)) edit->clear(), shown.clear();
      QTextCursor cursor(edit->document());
      cursor.movePosition(QTextCursor::End);
      cursor.insertText(Text(control.text).mid(Text(shown).size()));
      shown = control.text;
      if (control.selStart + control.selLength == 0) cursor.movePosition(QTextCursor::Start);
      edit->setTextCursor(cursor);
    });
  }

  void Bind(QComboBox* box, ComboBox& control) {
    for (const std::string& item : control.list) box->addItem(Text(item));
    Add(box, control, [box, &control] { box->setCurrentText(Text(control.text)); });
    QObject::connect(box, &QComboBox::textActivated, [this, &control](const QString& text) {
      control.text = text.toStdString();
      Click(control);
    });
  }

  void Add(QObject* widget, const Control& control, const Handler& show) {
    widget->setObjectName(Text(control.name));
    widget->setProperty("accessibleName", Text(control.spokenName).trimmed());
    widget->setProperty("toolTip", Text(control.hint));
    Also([widget, &control, show] {
      widget->setProperty("enabled", control.enabled);
      widget->setProperty("visible", control.visible);
      show();
    });
    widgets_[&control] = {qobject_cast<QWidget*>(widget), shows_.size() - 1};
  }
  // Shown with the controls, whatever it shows.
  void Also(const Handler& show) { shows_.push_back(show); }

  // Runs what an event asks for; any control may differ afterwards.
  void Run(const Handler& handler) {
    ++running_;
    handler();
    --running_;
    ShowAll();
    if (running_ == 0) afterwards_();
  }
  void Click(const Control& control) {
    Run([&] { form_.Click(control); });
  }
  void ShowAll() {
    for (const Handler& show : shows_) show();
  }

  // At once, in the middle of a handler; only what looks different is painted.
  void Repaint(const Control& control) {
    const auto& [widget, show] = widgets_.at(&control);
    shows_[show]();
    QEvent paint(QEvent::UpdateRequest);
    QApplication::sendEvent(widget->window(), &paint);
  }
  void SetFocus(const Control& control) {
    widgets_.at(&control).first->setFocus(Qt::OtherFocusReason);
  }

 private:
  // Some captions end in a blank.
  void AddCaption(QObject* widget, const char* property, const CaptionedControl& control) {
    Add(widget, control, [widget, property, &control] {
      widget->setProperty(property, Text(control.caption).trimmed());
    });
  }

  // Tab leads to the marked one of several options.
  static void ShowMark(QAbstractButton& button, bool mark) {
    button.setChecked(mark);
    if (button.autoExclusive()) button.setFocusPolicy(mark ? Qt::StrongFocus : Qt::ClickFocus);
  }

  frmMain& form_;
  Handler afterwards_;
  int running_ = 0;  // handlers, one inside the other
  std::vector<Handler> shows_;
  std::unordered_map<const Control*, std::pair<QWidget*, std::size_t>> widgets_;  // with their show
};

}  // namespace marovia
