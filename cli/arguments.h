// The options that several commands share.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "marovia/codec.h"
#include "marovia/image.h"

#include "cli/console.h"
#include "cli/file_kinds.h"
#include "files/output_file.h"

namespace marovia::cli {

struct CommonOptions {
  bool json = false;
  Verbosity verbosity = Verbosity::kNormal;
  std::int64_t maxPixels = kDefaultMaxPixels;
};

// The name of a file, which the word is. Error kInvalidArgument where it is empty: the shell put in
// a variable that has no value.
std::string NotEmpty(const std::string& what, const std::string& word);

// A file named on the command line.
void AddFile(CLI::App& command, const std::string& name, std::string& file,
             const std::string& description);

// --json, -q, -v --max-pixels and --help.
void AddCommonOptions(CLI::App& command, CommonOptions& options);

// --page, of the image that is read.
void AddPageOption(CLI::App& command, int& page);
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

}  // namespace marovia::cli
