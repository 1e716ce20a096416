#include "window/binds.h"

#include <QAbstractScrollArea>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>

#include "window/picture_view.h"

namespace marovia {
namespace {

QString Text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

void Binds::Add(QWidget& widget, const Control& control, const Handler& show) {
  widget.setObjectName(Text(control.name));
  const Handler showAll = [&widget, &control, show] {
    widget.setEnabled(control.enabled);
    widget.setVisible(control.visible);
    show();
  };
  widgets_.emplace(&control, Shown{&widget, showAll});
  shows_.push_back(showAll);
}

void Binds::Bind(QAction& action, const MenuItem& item, const Handler& handler) {
  action.setObjectName(Text(item.name));
  shows_.emplace_back([&action, &item] {
    action.setText(Text(item.caption).trimmed());
    action.setEnabled(item.enabled);
    action.setVisible(item.visible);
  });
  QObject::connect(&action, &QAction::triggered, [this, handler] { Run(handler); });
}

void Binds::Bind(QPushButton& button, const Button& control, const Handler& handler) {
  Add(button, control, [&button, &control] { button.setText(Text(control.caption)); });
  QObject::connect(&button, &QPushButton::clicked, [this, handler] { Run(handler); });
}

void Binds::Bind(QLabel& label, const TextLabel& control) {
  Add(label, control, [&label, &control] { label.setText(Text(control.caption)); });
}

void Binds::Bind(QGroupBox& box, const FrameBox& control) {
  Add(box, control, [&box, &control] { box.setTitle(Text(control.caption)); });
}

void Binds::Bind(QRadioButton& button, const OptionButton& control, const Handler& handler) {
  Add(button, control, [&button, &control] {
    button.setText(Text(control.caption).trimmed());
    button.setChecked(control.selected);
  });
  QObject::connect(&button, &QRadioButton::clicked, [this, handler] { Run(handler); });
}

void Binds::Bind(QCheckBox& box, CheckBox& control) {
  Add(box, control, [&box, &control] {
    box.setText(Text(control.caption));
    box.setChecked(control.checked);
  });
  QObject::connect(&box, &QCheckBox::clicked, [this, &control](bool checked) {
    control.checked = checked;
    ShowAll();
  });
}

// A text that is as it should be is left alone, with the cursor where it stands.
void Binds::Bind(QLineEdit& edit, TextBox& control) {
  Add(edit, control, [&edit, &control] {
    const QString text = Text(control.text);
    if (edit.text() == text) return;
    edit.setText(text);
    edit.setCursorPosition(0);
  });
  QObject::connect(&edit, &QLineEdit::textEdited, [this, &control](const QString& text) {
    control.text = text.toStdString();
    ShowAll();
  });
}

// The form selects what was added so that it comes into view; the end of the selection does that
// without marking the text.
void Binds::Bind(QPlainTextEdit& edit, const TextBox& control) {
  Add(edit, control, [&edit, &control, shown = std::string()]() mutable {
    if (shown == control.text) return;
    shown = control.text;
    edit.setPlainText(Text(shown));
    const bool atEnd = control.selStart + control.selLength > 0;
    edit.moveCursor(atEnd ? QTextCursor::End : QTextCursor::Start);
  });
}

void Binds::Bind(QComboBox& box, ComboBox& control, const Handler& handler) {
  Add(box, control, [&box, &control] {
    if (box.count() == 0)
      for (const std::string& item : control.list) box.addItem(Text(item));
    box.setCurrentText(Text(control.text));
  });
  QObject::connect(&box, &QComboBox::activated, [this, &box, &control, handler] {
    control.text = box.currentText().toStdString();
    Run(handler);
  });
}

void Binds::Bind(PictureView& view, const PictureBox& control) {
  Add(view, control, [&view, &control] { view.ShowPicture(control); });
}

void Binds::Run(const Handler& handler) {
  handler();
  ShowAll();
}

void Binds::ShowAll() {
  for (const Handler& show : shows_) show();
}

void Binds::Repaint(const Control& control) {
  const auto found = widgets_.find(&control);
  if (found == widgets_.end()) return;
  found->second.show();
  QWidget* widget = found->second.widget;
  if (auto* area = qobject_cast<QAbstractScrollArea*>(widget)) widget = area->viewport();
  widget->repaint();
}

void Binds::SetFocus(const Control& control) {
  const auto found = widgets_.find(&control);
  if (found != widgets_.end()) found->second.widget->setFocus(Qt::OtherFocusReason);
}

}  // namespace marovia
