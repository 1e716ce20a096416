#include "cli/arguments.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "marovia/error.h"

#include "cli/coder_names.h"
#include "cli/values.h"

namespace marovia::cli {
namespace {

constexpr const char* kGeneral = "General";

}  // namespace

std::string NotEmpty(const std::string& what, const std::string& word) {
  if (word.empty()) Fail(Errc::kInvalidArgument, what + " is an empty name");
  return word;
}

void AddFile(CLI::App& command, const std::string& name, std::string& file,
             const std::string& description) {
  AddParsedOption(command, name, "", description,
                  [&file, name](const std::string& text) { file = NotEmpty(name, text); })
      ->required()
      ->group("Files");
}

void AddCommonOptions(CLI::App& command, CommonOptions& options) {
  command.add_flag("--json", options.json, "Print the result as JSON on standard output")
      ->group(kGeneral);
  CLI::Option* quiet = command
                           .add_flag_callback(
                               "-q,--quiet", [&] { options.verbosity = Verbosity::kQuiet; },
                               "Say nothing but errors")
                           ->group(kGeneral);
  command
      .add_flag_callback(
          "-v,--verbose", [&] { options.verbosity = Verbosity::kVerbose; },
          "Report passes and results on standard error")
      ->excludes(quiet)
      ->group(kGeneral);
  AddParsedOption(
      command, "--max-pixels", "N", "Refuse larger images (67108864, 8192 x 8192)",
      [&](const std::string& text) { options.maxPixels = ParseCount("--max-pixels", text); })
      ->group(kGeneral);
  command.set_help_flag("-h,--help", "Print this help")->group(kGeneral);
}

void AddPageOption(CLI::App& command, int& page) {
  AddParsedOption(command, "--page", "N", "Page of a TIFF that has several (1)",
                  [&](const std::string& text) {
                    constexpr std::int64_t kMost = std::numeric_limits<int>::max();
                    page = static_cast<int>(std::min(ParseCount("--page", text), kMost));
                  })
      ->group(kGeneral);
}

CLI::Option* AddForceOption(CLI::App& command, bool& force) {
  return command.add_flag("-f,--force", force, "Replace OUT if it exists")->group(kGeneral);
}

CLI::Option* AddRateOption(CLI::App& command, std::optional<double>& rate,
                           const std::string& description) {
  return AddParsedOption(command, "--rate", "BPP", description,
                         [&](const std::string& text) { rate = ParseRate("--rate", text); });
}

CLI::Option* AddBytesOption(CLI::App& command, std::optional<std::int64_t>& bytes,
                            const std::string& description) {
  return AddParsedOption(command, "--bytes", "N", description,
                         [&](const std::string& text) { bytes = ParseCount("--bytes", text); });
}

CLI::Option* AddRegionOption(CLI::App& command, std::optional<Region>& region,
                             const std::string& description) {
  return AddParsedOption(command, "--region", "R1,C1,R2,C2", description,
                         [&](const std::string& text) { region = ParseRegion(text); });
}

void AddFormatOption(CLI::App& command, Formats& formats, bool imagesToo) {
  command
      .add_option_function<std::vector<std::string>>(
          "--format",
          [&formats, imagesToo](const std::vector<std::string>& texts) {
            formats = ParseFormats(texts, imagesToo);
          },
          imagesToo ? "What IN or OUT is, where the name does not tell"
                    : "What the input is, where its name does not tell")
      ->delimiter(',')
      ->expected(1)
      ->take_all()
      ->allow_extra_args(false)
      ->option_text(Joined(FormatNames(imagesToo), "|"))
      ->group(kGeneral);
}

void CheckJsonHasRoom(const CommonOptions& options, const OutputFile& output) {
  if (options.json && output.IsStandardOutput())
    Fail(Errc::kInvalidArgument, "standard output cannot take both the file and --json");
}

CLI::Option* AddParsedOption(CLI::App& command, const std::string& name, const std::string& values,
                             const std::string& description,
                             const std::function<void(const std::string&)>& parse) {
  return command.add_option_function<std::string>(name, parse, description)->option_text(values);
}

}  // namespace marovia::cli
