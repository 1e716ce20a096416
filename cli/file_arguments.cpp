#include "cli/file_arguments.h"

#include <algorithm>
#include <memory>

#include "marovia/error.h"

#include "cli/help.h"
#include "cli/options.h"
#include "cli/values.h"

namespace marovia::cli {
namespace {

constexpr const char* kGroup = "Many files";
constexpr std::int64_t kMostJobs = 1024;

// A name of its own in the help; all go into one list.
void AddName(CLI::App& command, FileArguments& arguments, const std::string& name,
             const std::string& description) {
  AddParsedOption(command, name, "", description, [&arguments, name](const std::string& text) {
    arguments.names.push_back(NotEmpty(name, text));
  })->group("Files");
}

// What follows the first two names.
void AddMoreNames(CLI::App& command, FileArguments& arguments) {
  command
      .add_option_function<std::vector<std::string>>(
          "MORE",
          [&](const std::vector<std::string>& names) {
            for (const std::string& name : names) arguments.names.push_back(NotEmpty("IN", name));
          })
      ->group("");
}

void AddManyFiles(CLI::App& command, FileArguments& arguments) {
  CLI::Option* folder =
      AddParsedOption(
          command, "--output-dir", "DIR", "Write DIR/NAME.EXT for each IN",
          [&](const std::string& text) { arguments.outputDir = NotEmpty("--output-dir", text); })
          ->group(kGroup);
  command
      .add_option("--files0-from", arguments.listFile,
                  "Names of more inputs, each ended by a NUL; FILE may be - for standard input")
      ->option_text("FILE")
      ->needs(folder)
      ->group(kGroup);
  AddParsedOption(command, "-j,--jobs", "N", "Files to work on at a time (1); each needs memory",
                  [&](const std::string& text) {
                    arguments.jobs = std::min(ParseCount("--jobs", text), kMostJobs);
                  })
      ->needs(folder)
      ->group(kGroup);
  AddParsedOption(command, "--shard", "I/N", "Only share I of N, from 1, chosen by the names",
                  [&](const std::string& text) { arguments.shard = ParseShard(text); })
      ->needs(folder)
      ->group(kGroup);
}

}  // namespace

Shard ParseShard(const std::string& text) {
  const std::size_t slash = std::min(text.find('/'), text.size());
  const std::string count = slash == text.size() ? "" : text.substr(slash + 1);
  const Shard shard{ParseCount("--shard", text.substr(0, slash)), ParseCount("--shard", count)};
  if (shard.index > shard.count)
    Fail(Errc::kInvalidArgument, "--shard: there is no share " + std::to_string(shard.index) +
                                     " of " + std::to_string(shard.count));
  return shard;
}

void AddFileArguments(CLI::App& command, FileArguments& arguments, const std::string& input,
                      const std::string& output) {
  AddName(command, arguments, "IN", input);
  AddName(command, arguments, "OUT", output);
  AddMoreNames(command, arguments);
  AddManyFiles(command, arguments);
  CLI::Option* force = AddForceOption(command, arguments.force);
  command
      .add_flag("--skip-existing", arguments.skipExisting,
                "Leave an input alone whose output is there")
      ->excludes(force)
      ->group("General");
  command.formatter(std::make_shared<HelpFormatter>(
      std::vector<std::string>{"[OPTIONS] IN OUT", "[OPTIONS] IN... --output-dir DIR"}));
}

void CheckFileArguments(const FileArguments& arguments) {
  const std::size_t count = arguments.names.size();
  if (arguments.outputDir) {
    if (count == 0 && !arguments.listFile) Fail(Errc::kInvalidArgument, "IN is required");
  } else if (count < 2) {
    Fail(Errc::kInvalidArgument, count == 0 ? "IN and OUT are required"
                                            : "OUT is required, or --output-dir for many files");
  } else if (count > 2) {
    Fail(Errc::kInvalidArgument, "more than one input needs --output-dir");
  }
}

}  // namespace marovia::cli
