// A command's work on one file, run on the one that the command line names or on many.
#pragma once

#include <functional>
#include <string_view>

#include "cli/arguments.h"
#include "cli/console.h"
#include "cli/file_list.h"

namespace marovia::cli {

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
