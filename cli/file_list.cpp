#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>
#include <unordered_map>
#include <utility>

#include "marovia/error.h"

#include "cli/arguments.h"
#include "cli/file_kinds.h"
#include "cli/help.h"
#include "cli/many_files.h"
#include "cli/values.h"
#include "files/input_file.h"

namespace marovia::cli {
namespace {

constexpr const char* kGroup = "Many files";
constexpr std::int64_t kMostJobs = 1024;
constexpr std::int64_t kMostThreads = 1024;

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
  AddParsedOption(
      command, "-T,--threads", "N", "Threads for a file (all processors; 1 with several jobs)",
      [&](const std::string& text) {
        arguments.threads = static_cast<int>(std::min(ParseCount("--threads", text), kMostThreads));
      })
      ->group(kGroup);
  AddParsedOption(command, "--shard", "I/N", "Only share I of N, from 1, chosen by the names",
                  [&](const std::string& text) { arguments.shard = ParseShard(text); })
      ->needs(folder)
      ->group(kGroup);
}

// FNV-1a, its halves folded. Part of what users rely on: shares stay the same between versions.
std::uint64_t HashOf(std::string_view name) {
  std::uint64_t hash = 0xcbf29ce484222325U;
  for (const char c : name) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
  return hash ^ (hash >> 32U);
}

std::vector<std::string> NamesFrom(const std::string& listFile, Console& console) {
  console.SetInput(listFile);
  const Bytes list = ReadInput(listFile, kDefaultMaxPixels);
  std::string_view rest(reinterpret_cast<const char*>(list.data()), list.size());
  constexpr auto kNone = std::string_view::npos;
  if (rest.find('\0') == kNone && rest.find('\n') != kNone)
    Fail(Errc::kInvalidArgument,
         "holds lines, but each name must end with a NUL (find -print0 writes such lists)");
  std::vector<std::string> names;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\0'), rest.size());
    names.emplace_back(rest.substr(0, end));
    if (names.back().empty())
      Fail(Errc::kInvalidArgument, "name " + std::to_string(names.size()) + " is empty");
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return names;
}

std::vector<std::string> InputsOf(const FileArguments& arguments, Console& console) {
  std::vector<std::string> inputs = arguments.names;
  if (!arguments.listFile) return inputs;
  std::vector<std::string> listed = NamesFrom(*arguments.listFile, console);
  inputs.insert(inputs.end(), std::make_move_iterator(listed.begin()),
                std::make_move_iterator(listed.end()));
  return inputs;
}

void CheckNoneClash(const std::vector<FileTask>& tasks) {
  std::unordered_map<std::string_view, std::string_view> inputOf;
  for (const FileTask& task : tasks) {
    const auto [first, isNew] = inputOf.emplace(task.output, task.input);
    if (isNew) continue;
    Fail(Errc::kInvalidArgument, "both " + std::string(first->second) + " and " + task.input +
                                     " would be written to " + task.output + "; nothing was done");
  }
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

bool IsInShard(std::string_view input, const Shard& shard) {
  const auto count = static_cast<std::uint64_t>(shard.count);
  return HashOf(input) % count + 1 == static_cast<std::uint64_t>(shard.index);
}

std::vector<FileTask> TasksOf(const FileArguments& arguments, std::string_view extension,
                              Console& console) {
  std::vector<FileTask> tasks;
  for (std::string& input : InputsOf(arguments, console)) {
    console.SetInput(input);
    std::string output = NameIn(*arguments.outputDir, input, extension);
    tasks.push_back({std::move(input), std::move(output)});
  }
  console.SetInput("");
  CheckNoneClash(tasks);
  if (arguments.shard)
    std::erase_if(tasks,
                  [&](const FileTask& task) { return !IsInShard(task.input, *arguments.shard); });
  return tasks;
}

}  // namespace marovia::cli
