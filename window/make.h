// Widgets, their texts, and their rows and columns.
#pragma once

#include <QtWidgets>
#include <initializer_list>
#include <string_view>
#include <utility>

#include "marovia/image.h"

namespace marovia {

inline constexpr int kMargin = 6;

// A widget or layout whose parent, named among the arguments or got by being added, deletes it.
template <class T, class... Arguments>
T* Make(Arguments&&... arguments) {
  return new T(std::forward<Arguments>(arguments)...);  // NOLINT(cppcoreguidelines-owning-memory)
}

inline QString Text(std::string_view text) {
  return QString::fromUtf8(text);
}

// For a window and its frame, on the screen of another.
inline QSize RoomOnScreen(const QWidget& widget) {
  const int title = widget.style()->pixelMetric(QStyle::PM_TitleBarHeight);
  return widget.screen()->availableSize() - QSize(0, title);
}

// A view of the samples, which must outlive it; null for an empty image.
inline QImage ShownImage(const Image& image) {
  if (image.Empty()) return {};
  return {image.Samples().data(), image.Cols(), image.Rows(), image.Cols(),
          QImage::Format_Grayscale8};
}

// Among the parts of a row or column: what room is left.
inline QWidget* Room() {
  return nullptr;
}

inline QBoxLayout* Fill(QWidget* widget, QBoxLayout::Direction direction,
                        std::initializer_list<QWidget*> parts) {
  auto* layout = Make<QBoxLayout>(direction, widget);
  for (QWidget* part : parts) part == Room() ? layout->addStretch() : layout->addWidget(part);
  return layout;
}

inline QWidget* Row(std::initializer_list<QWidget*> parts,
                    QBoxLayout::Direction direction = QBoxLayout::LeftToRight) {
  auto* row = Make<QWidget>();
  Fill(row, direction, parts)->setContentsMargins(0, 0, 0, 0);
  return row;
}

inline QWidget* Column(std::initializer_list<QWidget*> parts) {
  return Row(parts, QBoxLayout::TopToBottom);
}

// Down each column in turn; the rows are aligned, the columns of one width.
inline QWidget* Columns(int rows, std::initializer_list<QWidget*> parts) {
  auto* widget = Make<QWidget>();
  auto* grid = Make<QGridLayout>(widget);
  grid->setContentsMargins(0, 0, 0, 0);
  for (QWidget* part : parts) grid->addWidget(part, grid->count() % rows, grid->count() / rows);
  for (int column = 0; column < grid->columnCount(); ++column) grid->setColumnStretch(column, 1);
  return widget;
}

}  // namespace marovia
