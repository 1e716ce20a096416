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
    "With --output-dir every IN becomes a file in DIR under its name. One that fails is\n"
    "named and stops no other. The exit status is then 0 where all are done or skipped,\n"
    "3 where some were cut short, else that of the failures, or 1 where they differ.\n"
    "With --json each file is one line.\n";

// Share `index` of `count`, from 1.
struct Shard {
  std::int64_t index = 1;
  std::int64_t count = 1;
};

struct FileArguments {
  std::vector<std::string> names;  // IN and OUT, or with outputDir the inputs
  bool force = false;
  bool skipExisting = false;
  std::optional<std::string> outputDir;
  std::optional<std::string> listFile;  // "-" is standard input
  std::int64_t jobs = 1;
  std::optional<int> threads;  // for one file

  // All processors for one file at a time, one thread for each of several.
  [[nodiscard]] int ThreadsOfAFile() const { return threads.value_or(jobs > 1 ? 1 : 0); }
  std::optional<Shard> shard;
};

// "I/N". Error kInvalidArgument unless 1 <= I <= N.
Shard ParseShard(const std::string& text);

// IN and OUT, with their descriptions, and the options for many files.
void AddFileArguments(CLI::App& command, FileArguments& arguments, const std::string& input,
                      const std::string& output);

// Error kInvalidArgument unless there are one input and an output, or a folder for any number.
void CheckFileArguments(const FileArguments& arguments);

struct FileTask {
  std::string input;
  std::string output;
};

// Whether the share holds the input of that name. The name alone decides, not its place: machines
// that list a folder in different orders still share it without gap or overlap, and a file that is
// added moves no other to another share.
bool IsInShard(std::string_view input, const Shard& shard);

// The share of this run of all inputs named, each with its output DIR/NAME.EXTENSION. Error
// kInvalidArgument where two inputs, in whatever shares, would have one output.
std::vector<FileTask> TasksOf(const FileArguments& arguments, std::string_view extension,
                              Console& console);

// May run on several threads at once.
using FileWork = std::function<ExitStatus(const FileTask&, Console&)>;

// Runs the work on IN and OUT.
ExitStatus RunOneFile(const FileArguments& files, const FileTask& task, const FileWork& work,
                      Console& console);

// Runs the work on every input, up to `jobs` at once, and tells in a summary what failed. A file
// that fails stops no other; an interrupt ends the run with the files in hand. The status is that
// of the failures where they share one.
ExitStatus RunManyFiles(const FileArguments& files, const CommonOptions& options,
                        std::string_view extension, const FileWork& work, Console& console);

}  // namespace marovia::cli
