// The windows beside the main one, and what they share.
#pragma once

#include <filesystem>

#include "window/make.h"

namespace marovia {

// The help page from its top, with a line to search it, back and forward.
void ShowHelpWindow(const std::filesystem::path& file, QWidget* parent);

// Has a bar of tools; Esc closes it.
class ToolWindow : public QMainWindow {
 public:
  ToolWindow(const QString& name, const QString& title, QSize size, QWidget* parent)
      : QMainWindow(parent), bar_(addToolBar(title)) {
    resize(size.boundedTo(RoomOnScreen(*this)));
    setObjectName(name);
    setWindowTitle(title);
    bar_->setMovable(false);
    Make<QShortcut>(QKeySequence::Cancel, this, [this] { close(); });
  }

 protected:
  // The slot is a receiver and one of its methods, or a callable.
  template <class... Slot>
  QAction* AddTool(const QString& text, const QKeySequence& keys, const Slot&... slot) {
    QAction* tool = bar_->addAction(text);
    tool->setObjectName(text);
    tool->setShortcut(keys);
    tool->setToolTip(text + " (" + keys.toString(QKeySequence::NativeText) + ")");
    connect(tool, &QAction::triggered, slot...);
    return tool;
  }

  // Set apart from what stands before it, behind a caption if it has one.
  template <class Field>
  Field* AddField(const QString& name, const QString& spoken, const QString& caption = {}) {
    auto* field = Make<Field>();
    field->setObjectName(name);
    field->setAccessibleName(spoken);
    bar_->addSeparator();
    if (!caption.isEmpty()) bar_->addWidget(Make<QLabel>(caption));
    bar_->addWidget(field);
    return field;
  }

  QToolBar* bar_;
};

}  // namespace marovia
