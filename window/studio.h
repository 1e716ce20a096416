// The studio: what every byte of a compressed file buys, seen while it is chosen.
#pragma once

#include <QMainWindow>

#include "app/desktop.h"

namespace marovia {

// In the studio's window, which is made if there is none, and is deleted when it is closed.
QMainWindow* ShowStudio();
// A file as its menu's Open does.
void OpenInStudio(const QString& file);
// What the form is at work on.
void OpenInStudio(const StudioRequest& request);

}  // namespace marovia
