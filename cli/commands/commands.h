// The commands of the tool. Each adds itself to the command line; chosen there, it becomes the
// action.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>

#include "cli/console.h"

namespace marovia::cli {

// What the command line chose; empty until one command was parsed.
using Action = std::function<ExitStatus(Console&)>;

void AddCompress(CLI::App& tool, Action& action);
void AddDecompress(CLI::App& tool, Action& action);
void AddMeasure(CLI::App& tool, Action& action);
void AddInfo(CLI::App& tool, Action& action);
void AddTruncate(CLI::App& tool, Action& action);
void AddCurve(CLI::App& tool, Action& action);
void AddDifference(CLI::App& tool, Action& action);
void AddThumbnail(CLI::App& tool, Action& action);

// A command under its name, with a line for the list of commands.
inline CLI::App& AddCommand(CLI::App& tool, const std::string& name,
                            const std::string& description) {
  return *tool.add_subcommand(name, description)->group("Commands");
}

// Where the command is the one chosen, the action runs it with what its options filled in.
template <class Arguments>
void SetAction(CLI::App& command, Action& action, const std::shared_ptr<Arguments>& arguments,
               ExitStatus (*run)(const Arguments&, Console&)) {
  command.callback([&action, arguments, run] {
    action = [arguments, run](Console& console) {
      console.SetVerbosity(arguments->common.verbosity);
      return run(*arguments, console);
    };
  });
}

}  // namespace marovia::cli
