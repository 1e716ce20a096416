// Widgets that belong to the widget that they are made in.
#pragma once

#include <QLabel>
#include <QString>
#include <utility>

namespace marovia {

// A widget or layout whose parent, named among the arguments or got by being added, deletes it.
template <class T, class... Arguments>
T& Make(Arguments&&... arguments) {
  return *new T(std::forward<Arguments>(arguments)...);  // NOLINT(cppcoreguidelines-owning-memory)
}

inline QLabel& MakeLabel(const char* name, const QString& text = {}) {
  auto& label = Make<QLabel>(text);
  label.setObjectName(name);
  return label;
}

}  // namespace marovia
