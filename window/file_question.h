#pragma once

#include <filesystem>
#include <optional>

#include "app/file_dialog.h"

class QWidget;

namespace marovia {

// Puts the form's question for a file; nothing where it was cancelled.
std::optional<std::filesystem::path> AskForFile(const FileDialog& question, QWidget* parent);

}  // namespace marovia
