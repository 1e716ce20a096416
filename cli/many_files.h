// A command's work on one file, run on the one that the command line names or on many.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/arguments.h"
#include "cli/console.h"

namespace marovia::cli {

// For the help of a command.
inline constexpr const char* kManyFilesNote =
    "With --output-dir every IN becomes a file in DIR under its name; with --mirror ROOT\n"
    "it keeps its folders below ROOT, and with -r an IN may be a folder of files. One\n"
    "that fails is named and stops no other. The exit status is then 0 where all are\n"
    "done or skipped, 3 where some were cut short, else that of the failures, or 1 where\n"
    "they differ. With --json each file is one line.\n";

// Share `index` of `count`, from 1.
struct Shard {
  std::int64_t index = 1;
  std::int64_t count = 1;
};

struct FileArguments {
  std::vector<std::string> names;  // IN and OUT, or with a folder the inputs
  bool force = false;
  bool skipExisting = false;
  bool update = false;
  bool recursive = false;
  std::optional<std::string> folder;  // that of the outputs, or of what goes with the inputs
  std::optional<std::string> mirror;
  std::optional<std::string> listFile;  // "-" is standard input
  std::int64_t jobs = 1;
  std::optional<Shard> shard;

  [[nodiscard]] bool MayReplace() const { return force || update; }
};

// "I/N". Error kInvalidArgument unless 1 <= I <= N.
Shard ParseShard(const std::string& text);

// IN and OUT, with their descriptions, and the options for many files.
void AddFileArguments(CLI::App& command, FileArguments& arguments, const std::string& input,
                      const std::string& output);

// One of the names on the command line; all go into one list.
void AddName(CLI::App& command, FileArguments& arguments, const std::string& name,
             const std::string& description);
// Those that follow.
void AddMoreNames(CLI::App& command, FileArguments& arguments);

// The options that say which files: --mirror where there is a folder, on which all then depend, and
// -r, --files0-from, -j and --shard.
void AddInputOptions(CLI::App& command, FileArguments& arguments, CLI::Option* folder);

// How a command calls its two files, and the option that names a folder in place of the second.
struct PairNames {
  const char* input = "IN";
  const char* other = "OUT";
  const char* folder = "--output-dir";
};

// Error kInvalidArgument unless there are one input and an output, or a folder for any number.
void CheckFileArguments(const FileArguments& arguments, const PairNames& names = {});

// Whether all that is asked for is one file by its name. Error kInvalidArgument where none is
// named.
bool IsOneName(const FileArguments& arguments);

// The line before what is told of a file that is one of many.
std::string TitleOf(const std::string& name);

struct FileTask {
  std::string input;
  std::string output;  // empty where there is no folder
};

// Whether the share holds the input of that name. The name alone decides, not its place: machines
// that list a folder in different orders still share it without gap or overlap, and a file that is
// added moves no other to another share.
bool IsInShard(std::string_view input, const Shard& shard);

// May run on several threads at once.
using FileWork = std::function<ExitStatus(const FileTask&, Console&)>;

// What a command does with many files.
struct ManyFiles {
  FileWork work;
  // Whether it takes the file of that name, found in a folder.
  std::function<bool(const std::string&)> takes;
  // Of the output for an input of that name; none where the command writes no files.
  std::function<std::string(const std::string&)> extension;

  [[nodiscard]] bool Writes() const { return static_cast<bool>(extension); }
};

// The share of this run of all inputs named and of those in the folders named, each with its output
// DIR/NAME.EXTENSION, or DIR/FOLDERS/NAME.EXTENSION with those below the root. Error
// kInvalidArgument where two inputs, in whatever shares, would have one output, or one lies outside
// the root.
std::vector<FileTask> TasksOf(const FileArguments& arguments, const ManyFiles& many,
                              Console& console);

// Runs the work on IN and OUT.
ExitStatus RunOneFile(const FileArguments& files, const FileTask& task, const FileWork& work,
                      Console& console);

// Runs the work on every input, up to `jobs` at once, and tells in a summary what failed. A file
// that fails stops no other; an interrupt ends the run with the files in hand. The status is that
// of the failures where they share one.
ExitStatus RunManyFiles(const FileArguments& files, const CommonOptions& options,
                        const ManyFiles& many, Console& console);

}  // namespace marovia::cli
