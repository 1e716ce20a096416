// What happens beside a run, which takes no events: a dialog that closes before it, and what is
// clicked and typed while it lasts.
#pragma once

#include <QWidget>

namespace marovia {

// Paints what has come into view, and drops all mouse and keyboard input until now.
void Settle();

// The same once the window has come back to the front from behind a dialog.
void SettleInFront(const QWidget& window);

}  // namespace marovia
