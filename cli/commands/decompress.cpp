#include <string>
#include <vector>

#include "base/number_text.h"
#include "cli/arguments.h"
#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/file_kinds.h"
#include "cli/many_files.h"
#include "cli/values.h"
#include "codec/report_text.h"
#include "files/input_file.h"
#include "files/output_file.h"

namespace marovia::cli {
namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  marovia decompress photo.awh photo.pgm  all that the file holds\n"
    "  marovia decompress photo.awh small.bmp --rate 0.1  as of 0.1 bits per pixel\n"
    "  marovia decompress photo.awh quarter.pgm --reduce 2  sides a quarter as long\n"
    "  marovia decompress - - <photo.awh  from pipe to pipe\n"
    "  marovia decompress *.awh --output-dir pictures -j 4  four files at a time\n"
    "\n"
    "A file cut short gives the picture that is left of it, and exit status 3. Any start\n"
    "of an .awh file is a file; it is known by its first bytes, whatever its name.\n"
    "IN and OUT may be - for standard input and output; OUT is then a PGM unless\n"
    "--format says what else, and what IN is it must say of any file but an .awh.\n";

struct DecompressArguments {
  CommonOptions common;
  FileArguments files;
  std::optional<double> rate;
  int reduce = 0;
  Formats formats;
};

// A file without a budget has as many as there are.
std::int64_t BitsOf(const FileInfo& info) {
  return info.budget ? *info.budget : info.bitsPresent;
}

void NoticeRate(const DecompressArguments& arguments, const DecompressResult& result,
                const Console& console) {
  if (!arguments.rate) return;
  if (result.info.kind == FileKind::kAwg) {
    console.Notice("lossless, so decoded whole whatever --rate says (see marovia truncate)");
  } else if (result.rateHeld) {
    const double held =
        static_cast<double>(BitsOf(result.info)) / result.info.rows / result.info.cols;
    console.Notice("made with " + TrimmedNumberText(static_cast<float>(held)) +
                   " bits per pixel, so not decoded at " + TrimmedNumberText(*arguments.rate));
  }
}

int ParseReduce(const std::string& text) {
  constexpr int kMost = 16;
  const auto levels = WholeNumber<int>(text);
  if (!levels || *levels < 0 || *levels > kMost)
    RefuseValue("--reduce", text, "a number from 0 to 16");
  return *levels;
}

void ReportResult(const DecompressArguments& arguments, const FileTask& task,
                  const DecompressResult& result, const PictureWriter& writer, Console& console) {
  console.Tell("Image decompressed.\n");
  if (!arguments.common.json) return;
  Json json = {{"input", task.input}, {"output", task.output}, {"format", writer.extension}};
  json.update(JsonOf(result.info));
  json["rateHeld"] = result.rateHeld;
  json["truncated"] = result.truncated;
  json["passes"] = JsonOf(result.passes);
  console.Print(json);
}

DecompressResult Decode(const DecompressArguments& arguments, const std::string& input,
                        Console& console) {
  console.SetInput(input);
  const Bytes file = ReadInput(input, arguments.common.maxPixels);
  const FileKind kind = KindOfInput(file, input, arguments.formats.kind);
  CheckIsOfKind(file, kind, arguments.common.maxPixels);
  DecompressOptions options;
  options.rate = arguments.rate;
  options.maxPixels = arguments.common.maxPixels;
  options.threads = arguments.files.ThreadsOfAFile();
  options.reduce = arguments.reduce;
  if (console.IsVerbose()) {
    const FileInfo info = Inspect(file, kind, arguments.common.maxPixels);
    options.onPass = [&console, info](const PassReport& report) {
      console.Tell(PassReportText(report, info.rows, info.cols, true));
    };
  }
  DecompressResult result = Decompress(file, kind, options);
  NoticeRate(arguments, result, console);
  return result;
}

ExitStatus DecompressFile(const DecompressArguments& arguments, const FileTask& task,
                          Console& console) {
  console.SetOutput(task.output);
  const PictureWriter& writer = WriterFor(task.output, arguments.formats.image);
  const OutputFile output(task.output, arguments.files.MayReplace());
  CheckJsonHasRoom(arguments.common, output);

  const DecompressResult result = Decode(arguments, task.input, console);
  console.SetOutput(task.output);
  output.Put(writer.write(result.image));
  ReportResult(arguments, task, result, writer, console);
  if (!result.truncated) return ExitStatus::kDone;
  console.SetInput(task.input);
  console.Complain("cut short: decoded from the " + std::to_string(result.info.bitsPresent) +
                   " bits that are there");
  return ExitStatus::kIncomplete;
}

ExitStatus RunDecompress(const DecompressArguments& arguments, Console& console) {
  CheckFileArguments(arguments.files);
  const FileWork work = [&](const FileTask& task, Console& voice) {
    return DecompressFile(arguments, task, voice);
  };
  if (arguments.files.folder) {
    const PictureWriter* const told = arguments.formats.image;
    const PictureWriter& writer = told == nullptr ? PictureWriters().front() : *told;
    const ManyFiles many{work, IsCompressedFile,
                         [&](const std::string&) { return std::string(writer.extension); }};
    return RunManyFiles(arguments.files, arguments.common, many, console);
  }
  const std::vector<std::string>& names = arguments.files.names;
  return RunOneFile(arguments.files, {names[0], names[1]}, work, console);
}

}  // namespace

void AddDecompress(CLI::App& tool, Action& action) {
  auto arguments = std::make_shared<DecompressArguments>();
  CLI::App& command = AddCommand(tool, "decompress", "Turn a compressed file into an image");
  AddFileArguments(command, arguments->files, "The compressed file",
                   "The image: " + WrittenExtensions());
  AddThreadsOption(command, arguments->files);
  AddRateOption(command, arguments->rate, "Bits per pixel to decode (all)")->group("General");
  AddParsedOption(command, "--reduce", "N", "A picture 2^N times smaller, in less time and memory",
                  [arguments = arguments.get()](const std::string& text) {
                    arguments->reduce = ParseReduce(text);
                  })
      ->group("General");
  AddFormatOption(command, arguments->formats, true);
  AddCommonOptions(command, arguments->common);
  command.footer(std::string(kExamples) + "\n" + kManyFilesNote);
  SetAction<DecompressArguments>(command, action, arguments, &RunDecompress);
}

}  // namespace marovia::cli
