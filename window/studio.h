// The studio: what every byte of a compressed file buys, seen while it is chosen.
#pragma once

#include "window/session.h"

namespace marovia {

// A window of its own, shown and deleted when it is closed.
class Studio;
Studio* ShowStudio(QWidget* parent = nullptr);

// On the studio, as the menu's Open does; nothing where the subject has neither image nor file.
void OpenInStudio(Studio& studio, const QString& file);
void OpenInStudio(Studio& studio, const Subject& subject);

}  // namespace marovia
