// How the windows look where the desktop does not say.
#pragma once

#include <QStringList>

namespace marovia {

// The first is the desktop's own.
QStringList ThemeNames();
// Another name is the first.
void SetTheme(const QString& name);

}  // namespace marovia
