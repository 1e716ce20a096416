// The list of files that one run works on.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/console.h"
#include "cli/file_arguments.h"

namespace marovia::cli {

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

}  // namespace marovia::cli
