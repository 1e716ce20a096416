// The options that several commands share, and how a command is told to the tool.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "marovia/codec.h"
#include "marovia/image.h"

#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/file_names.h"
#include "files/output_file.h"

namespace marovia::cli {

// What the command line chose; empty until one command was parsed.
using Action = std::function<ExitStatus(Console&)>;

struct CommonOptions {
  bool json = false;
  Verbosity verbosity = Verbosity::kNormal;
  std::int64_t maxPixels = kDefaultMaxPixels;
};

// A command under its name, with room for its one-line description in the list of commands.
CLI::App& AddCommand(CLI::App& tool, const std::string& name, const std::string& description);

// The name of a file, which the word is. Error kInvalidArgument where it is empty: the shell put in
// a variable that has no value.
std::string NotEmpty(const std::string& what, const std::string& word);

// A file named on the command line.
void AddFile(CLI::App& command, const std::string& name, std::string& file,
             const std::string& description);

// --json, -q, -v --max-pixels and --help.
void AddCommonOptions(CLI::App& command, CommonOptions& options);

CLI::Option* AddForceOption(CLI::App& command, bool& force);
CLI::Option* AddRateOption(CLI::App& command, std::optional<double>& rate,
                           const std::string& description);
CLI::Option* AddBytesOption(CLI::App& command, std::optional<std::int64_t>& bytes,
                            const std::string& description);
CLI::Option* AddRegionOption(CLI::App& command, std::optional<Region>& region,
                             const std::string& description);

// --format, of images too or of compressed files only.
void AddFormatOption(CLI::App& command, Formats& formats, bool imagesToo);

// Error kInvalidArgument where both the JSON and the output want standard output.
void CheckJsonHasRoom(const CommonOptions& options, const OutputFile& output);

// An option whose text is parsed as it is met. A second one of its name is refused.
CLI::Option* AddParsedOption(CLI::App& command, const std::string& name, const std::string& values,
                             const std::string& description,
                             const std::function<void(const std::string&)>& parse);

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
