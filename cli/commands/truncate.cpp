#include <string>
#include <utility>
#include <vector>

#include "cli/arguments.h"
#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/file_kinds.h"
#include "cli/help.h"
#include "cli/many_files.h"
#include "cli/values.h"
#include "files/input_file.h"
#include "files/output_file.h"

namespace marovia::cli {
namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  marovia truncate photo.awh small.awh --rate 0.1\n"
    "  marovia truncate master.awh web.awh --bytes 30000\n"
    "\n"
    "OUT decodes just as IN would at that rate; nothing is coded again, so that one\n"
    "lossless master gives every rate. Of an .awh OUT is the start; of an .awg, which is\n"
    "lossless, it is an .awf. IN and OUT may be - for standard input and output.\n";

struct TruncateArguments {
  CommonOptions common;
  FileArguments files;
  std::optional<double> rate;
  std::optional<std::int64_t> bytes;
  Formats formats;
};

void ReportResult(const TruncateArguments& arguments, const std::string& input,
                  const std::string& output, const TruncateResult& result, Console& console) {
  console.Tell("Compressed file: " + output + "\n" + std::to_string(result.file.size()) +
               " bytes\n");
  if (!arguments.common.json) return;
  Json json = {{"input", input}, {"output", output}, {"bytes", result.file.size()}};
  json.update(JsonOf(Inspect(result.file, result.kind, arguments.common.maxPixels)));
  json["rateHeld"] = result.rateHeld;
  console.Print(json);
}

TruncateResult Shorten(const TruncateArguments& arguments, const std::string& input,
                       Console& console) {
  console.SetInput(input);
  Bytes file = ReadInput(input, arguments.common.maxPixels);
  const FileKind kind = KindOfInput(file, input, arguments.formats.kind);
  CheckIsOfKind(file, kind, arguments.common.maxPixels);
  TruncateResult result = Truncate(
      std::move(file), kind,
      {.rate = arguments.rate, .bytes = arguments.bytes, .maxPixels = arguments.common.maxPixels});
  if (result.rateHeld) console.Notice("holds no more than that already, so it stays as it is");
  return result;
}

ExitStatus TruncateFile(const TruncateArguments& arguments, const FileTask& task,
                        Console& console) {
  const TruncateResult result = Shorten(arguments, task.input, console);

  // Only now is it known whether a lossless file became a lossy one.
  console.SetOutput(task.output);
  const std::string name = OutputName(task.output, result.kind);
  console.SetOutput(name);
  const OutputFile output(name, arguments.files.MayReplace());
  CheckJsonHasRoom(arguments.common, output);
  output.Put(result.file);
  ReportResult(arguments, task.input, name, result, console);
  return ExitStatus::kDone;
}

// That of the shorter file, by the name of the long one. Only files of one kind are known without.
std::string ExtensionAfter(const TruncateArguments& arguments, const std::string& input) {
  const auto named = arguments.formats.kind ? arguments.formats.kind : KindNamed(input);
  const FileKind kind = named.value_or(FileKind::kAwh);
  return std::string(Extension(kind == FileKind::kAwg ? FileKind::kAwf : kind));
}

ExitStatus RunTruncate(const TruncateArguments& arguments, Console& console) {
  if (arguments.rate.has_value() == arguments.bytes.has_value())
    Fail(Errc::kInvalidArgument, "truncate needs --rate or --bytes (see marovia truncate --help)");
  CheckFileArguments(arguments.files);
  const FileWork work = [&](const FileTask& task, Console& voice) {
    return TruncateFile(arguments, task, voice);
  };
  const std::vector<std::string>& names = arguments.files.names;
  if (!arguments.files.folder)
    return RunOneFile(arguments.files, {names[0], names[1]}, work, console);
  const ManyFiles many{work, IsCompressedFile,
                       [&](const std::string& input) { return ExtensionAfter(arguments, input); }};
  return RunManyFiles(arguments.files, arguments.common, many, console);
}

}  // namespace

void AddTruncate(CLI::App& tool, Action& action) {
  auto arguments = std::make_shared<TruncateArguments>();
  CLI::App& command = AddCommand(tool, "truncate", "Make a shorter file of a compressed one");
  AddFileArguments(command, arguments->files, "The compressed file", "The shorter file");
  CLI::Option* rate =
      AddRateOption(command, arguments->rate, "Bits per pixel to keep")->group("Size");
  AddBytesOption(command, arguments->bytes, "The most bytes that OUT may have")
      ->excludes(rate)
      ->group("Size");
  AddFormatOption(command, arguments->formats, false);
  AddCommonOptions(command, arguments->common);
  command.formatter(std::make_shared<HelpFormatter>(
      std::vector<std::string>{"[OPTIONS] IN OUT --rate BPP", "[OPTIONS] IN OUT --bytes N",
                               "[OPTIONS] IN... --output-dir DIR --rate BPP"}));
  command.footer(std::string(kExamples) + "\n" + kManyFilesNote);
  SetAction<TruncateArguments>(command, action, arguments, &RunTruncate);
}

}  // namespace marovia::cli
