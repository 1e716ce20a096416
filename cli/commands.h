// The commands of the tool. Each adds itself to the command line; chosen there, it becomes the
// action.
#pragma once

#include <CLI/CLI.hpp>

#include "cli/options.h"

namespace marovia::cli {

void AddCompress(CLI::App& tool, Action& action);
void AddDecompress(CLI::App& tool, Action& action);
void AddMeasure(CLI::App& tool, Action& action);
void AddInfo(CLI::App& tool, Action& action);
void AddTruncate(CLI::App& tool, Action& action);
void AddCurve(CLI::App& tool, Action& action);
void AddDifference(CLI::App& tool, Action& action);
void AddThumbnail(CLI::App& tool, Action& action);

}  // namespace marovia::cli
