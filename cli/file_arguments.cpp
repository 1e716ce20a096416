#include <algorithm>
#include <cstdint>
#include <memory>
#include <thread>

#include "marovia/error.h"

#include "cli/arguments.h"
#include "cli/help.h"
#include "cli/many_files.h"
#include "cli/values.h"

namespace marovia::cli {
namespace {

constexpr const char* kGroup = "Many files";
constexpr std::int64_t kMostJobs = 1024;

std::int64_t ParseJobs(const std::string& text) {
  if (text == "auto") return std::max(1U, std::thread::hardware_concurrency());
  const auto jobs = WholeNumber<std::int64_t>(text);
  if (!jobs || *jobs < 1) RefuseValue("--jobs", text, "a whole number of 1 or more, or auto");
  return std::min(*jobs, kMostJobs);
}

// In the group; of use only where the folder is named, if there is one.
CLI::Option* Dependent(CLI::Option* option, CLI::Option* folder) {
  if (folder != nullptr) option->needs(folder);
  return option->group(kGroup);
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

// A name of its own in the help.
void AddName(CLI::App& command, FileArguments& arguments, const std::string& name,
             const std::string& description) {
  AddParsedOption(command, name, "", description, [&arguments, name](const std::string& text) {
    arguments.names.push_back(NotEmpty(name, text));
  })->group("Files");
}

void AddMoreNames(CLI::App& command, FileArguments& arguments) {
  command
      .add_option_function<std::vector<std::string>>(
          "MORE",
          [&](const std::vector<std::string>& names) {
            for (const std::string& name : names) arguments.names.push_back(NotEmpty("IN", name));
          })
      ->group("");
}

void AddInputOptions(CLI::App& command, FileArguments& arguments, CLI::Option* folder) {
  if (folder != nullptr)
    Dependent(AddParsedOption(
                  command, "--mirror", "ROOT", "Keep the folders of each IN below ROOT",
                  [&](const std::string& text) { arguments.mirror = NotEmpty("--mirror", text); }),
              folder);
  Dependent(command.add_flag("-r,--recursive", arguments.recursive,
                             "Take what is in folders, and in theirs"),
            folder);
  Dependent(
      command
          .add_option("--files0-from", arguments.listFile,
                      "Names of more inputs, each ended by a NUL; FILE may be - for standard input")
          ->option_text("FILE"),
      folder);
  Dependent(
      AddParsedOption(
          command, "-j,--jobs", "N",
          "Files to work on at a time (1), or auto: as many\nas processors; each needs memory",
          [&](const std::string& text) { arguments.jobs = ParseJobs(text); }),
      folder);
  Dependent(
      AddParsedOption(command, "--shard", "I/N", "Only share I of N, from 1, chosen by the names",
                      [&](const std::string& text) { arguments.shard = ParseShard(text); }),
      folder);
}

void AddFileArguments(CLI::App& command, FileArguments& arguments, const std::string& input,
                      const std::string& output) {
  AddName(command, arguments, "IN", input);
  AddName(command, arguments, "OUT", output);
  AddMoreNames(command, arguments);
  AddInputOptions(command, arguments,
                  AddParsedOption(command, "--output-dir", "DIR", "Write DIR/NAME.EXT for each IN",
                                  [&](const std::string& text) {
                                    arguments.folder = NotEmpty("--output-dir", text);
                                  })
                      ->group(kGroup));
  CLI::Option* force = AddForceOption(command, arguments.force);
  CLI::Option* skip = command
                          .add_flag("--skip-existing", arguments.skipExisting,
                                    "Leave an input alone whose output is there")
                          ->excludes(force)
                          ->group("General");
  command
      .add_flag("--update", arguments.update,
                "Leave an input alone whose output is no older, and replace\nthe others")
      ->excludes(force)
      ->excludes(skip)
      ->group("General");
  command.formatter(std::make_shared<HelpFormatter>(
      std::vector<std::string>{"[OPTIONS] IN OUT", "[OPTIONS] IN... --output-dir DIR"}));
}

bool IsOneName(const FileArguments& arguments) {
  if (arguments.names.empty() && !arguments.listFile)
    Fail(Errc::kInvalidArgument, "FILE is required");
  return arguments.names.size() == 1 && !arguments.listFile && !arguments.recursive;
}

std::string TitleOf(const std::string& name) {
  return OneLine(name) + "\n";
}

void CheckFileArguments(const FileArguments& arguments, const PairNames& names) {
  const std::size_t count = arguments.names.size();
  const std::string input = names.input;
  if (arguments.folder) {
    if (count == 0 && !arguments.listFile) Fail(Errc::kInvalidArgument, input + " is required");
  } else if (count < 2) {
    Fail(Errc::kInvalidArgument, count == 0 ? input + " and " + names.other + " are required"
                                            : std::string(names.other) + " is required, or " +
                                                  names.folder + " for many files");
  } else if (count > 2) {
    Fail(Errc::kInvalidArgument, std::string("more than one input needs ") + names.folder);
  }
}

}  // namespace marovia::cli
