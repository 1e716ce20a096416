#include "window/binds.h"

namespace marovia {

void Binds::Add(QObject* widget, const Control& control, const Handler& show) {
  widget->setObjectName(QString::fromUtf8(control.name));
  Also([widget, &control, show] {
    widget->setProperty("enabled", control.enabled);
    widget->setProperty("visible", control.visible);
    show();
  });
  widgets_[&control] = {qobject_cast<QWidget*>(widget), shows_.back()};
}

// Some captions end in a blank.
void Binds::AddCaption(QObject* widget, const char* property, const CaptionedControl& control) {
  Add(widget, control, [widget, property, &control] {
    widget->setProperty(property, QString::fromStdString(control.caption).trimmed());
  });
}

void Binds::Bind(QLabel* label, const char* name, std::string (frmMain::*text)() const) {
  label->setObjectName(name);
  Also([this, label, text] { label->setText(QString::fromStdString((form_.*text)())); });
}

void Binds::Bind(QAction* action, const MenuItem& item) {
  AddCaption(action, "text", item);
  QObject::connect(action, &QAction::triggered, [this, &item] { Click(item); });
}

void Binds::Bind(QAbstractButton* button, const CaptionedControl& control, const bool* mark) {
  AddCaption(button, "text", control);
  if (mark != nullptr) Also([button, mark] { button->setChecked(*mark); });
  QObject::connect(button, &QAbstractButton::clicked, [this, &control] { Click(control); });
}

// A text that is as it should be is left alone, with the cursor where it stands.
void Binds::Bind(QLineEdit* edit, TextBox& control) {
  Add(edit, control, [edit, &control] {
    const auto text = QString::fromStdString(control.text);
    if (edit->text() == text) return;
    edit->setText(text);
    edit->setCursorPosition(0);
  });
  QObject::connect(edit, &QLineEdit::textEdited, [this, &control](const QString& text) {
    Run([&] { control.text = text.toStdString(); });
  });
}

// The form selects what was added so that it comes into view; the end of the selection does that
// without marking the text.
void Binds::Bind(QPlainTextEdit* edit, const TextBox& control) {
  Add(edit, control, [edit, &control, shown = std::string()]() mutable {
    if (shown == control.text) return;
    shown = control.text;
    edit->setPlainText(QString::fromStdString(shown));
    const bool atEnd = control.selStart + control.selLength > 0;
    edit->moveCursor(atEnd ? QTextCursor::End : QTextCursor::Start);
  });
}

void Binds::Bind(QComboBox* box, ComboBox& control) {
  for (const std::string& item : control.list) box->addItem(QString::fromStdString(item));
  Add(box, control, [box, &control] { box->setCurrentText(QString::fromStdString(control.text)); });
  QObject::connect(box, &QComboBox::textActivated, [this, &control](const QString& text) {
    control.text = text.toStdString();
    Click(control);
  });
}

void Binds::Run(const Handler& handler) {
  handler();
  ShowAll();
}

void Binds::Click(const Control& control) {
  Run([&] { form_.Click(control); });
}

void Binds::ShowAll() {
  for (const Handler& show : shows_) show();
}

void Binds::Repaint(const Control& control) {
  const auto& [widget, show] = widgets_.at(&control);
  show();
  const auto* area = qobject_cast<QAbstractScrollArea*>(widget);
  (area != nullptr ? area->viewport() : widget)->repaint();
}

void Binds::SetFocus(const Control& control) {
  widgets_.at(&control).first->setFocus(Qt::OtherFocusReason);
}

}  // namespace marovia
