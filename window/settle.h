// What happens beside a run, which takes no events: a dialog that closes before it, and what is
// clicked and typed while it lasts.
#pragma once

#include <QWidget>
#include <functional>

namespace marovia {

// Paints what has come into view, and drops all mouse and keyboard input until now.
void Settle();

// The same once the window has come back to the front from behind a dialog.
void SettleInFront(const QWidget& window);

// Does the work on another thread while this one paints, and drops all input. What the work throws
// is thrown here.
void WorkBeside(const std::function<void()>& work);

// On the thread of the receiver, once that paints. What it throws is thrown here.
void TellThread(QObject& receiver, const std::function<void()>& news);

}  // namespace marovia
