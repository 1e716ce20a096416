#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string>
#include <utility>

#include "marovia/error.h"

#include "cli/arguments.h"
#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/file_kinds.h"
#include "cli/many_files.h"
#include "cli/values.h"
#include "files/input_file.h"
#include "files/output_file.h"
#include "image/sampling.h"

namespace marovia::cli {
namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  marovia thumbnail photo.awh photo.png\n"
    "  marovia thumbnail photo.awh photo.png --size 512\n"
    "\n"
    "OUT is a PNG, unless its name ends as that of another image that is written. Neither\n"
    "side is longer than N, and no picture is made larger. Only the start of IN is decoded.\n"
    "IN and OUT may be - for standard input and output.\n";

constexpr int kDefaultSize = 256;
constexpr int kMostSize = 4096;
// Bits for each pixel of the thumbnail. Edges take bits before the last of what is coarse has come;
// with so many a thumbnail is some 40 decibels from that of the whole image.
constexpr double kBitsPerPixel = 20;

struct ThumbnailArguments {
  CommonOptions common;
  FileArguments files;
  int size = kDefaultSize;
  Formats formats;
};

// The rate at which the image gets what its thumbnail needs.
double RateFor(const FileInfo& info, int size) {
  const double longest = std::max(info.rows, info.cols);
  const double scale = std::min(1.0, size / longest);
  return kBitsPerPixel * scale * scale;
}

// The levels that can be left out of an image that becomes smaller anyway: what is left is still
// four times as long, so that pixels at its border that lie beyond the image count little.
int LevelsToSpare(const FileInfo& info, int size) {
  int levels = 0;
  while (std::max(info.rows, info.cols) >> (levels + 1) >= 4 * size) ++levels;
  return levels;
}

// As much of a file as is read at a rate.
std::int64_t BytesFor(FileInfo info, double rate) {
  const double bits = rate * info.rows * info.cols;
  info.budget = static_cast<std::int32_t>(
      std::min<double>(bits, info.budget.value_or(std::numeric_limits<std::int32_t>::max())));
  return UsefulBytes(info);
}

DecompressResult DecodeFor(const ThumbnailArguments& arguments, const std::string& name,
                           InputFile& input) {
  const std::int64_t maxPixels = arguments.common.maxPixels;
  Bytes file = input.Read(kMostHeaderBytes);
  const FileKind kind = KindOfInput(file, name, arguments.formats.kind);
  CheckIsOfKind(file, kind, maxPixels);
  const FileInfo info = InspectStart(file, std::ssize(file), kind, maxPixels);
  const double rate = RateFor(info, arguments.size);
  const Bytes stream = input.Read(BytesFor(info, rate));
  file.insert(file.end(), stream.begin(), stream.end());
  DecompressOptions options{.maxPixels = maxPixels,
                            .threads = arguments.files.ThreadsOfAFile(),
                            .reduce = LevelsToSpare(info, arguments.size)};
  if (info.budget) {
    options.rate = rate;
    return Decompress(file, kind, options);
  }
  // A file without a rate of its own has one once it is cut.
  const TruncateResult start = Truncate(std::move(file), kind, {rate, {}, maxPixels});
  return Decompress(start.file, start.kind, options);
}

int ParseSize(const std::string& text) {
  const auto size = WholeNumber<int>(text);
  if (!size || *size < 1 || *size > kMostSize)
    RefuseValue("--size", text, "a number from 1 to 4096");
  return *size;
}

// Desktops name it as they like.
const PictureWriter& WriterOfThumbnail(const std::string& name) {
  if (const PictureWriter* const named = WriterNamed(name)) return *named;
  if (const PictureWriter* const png = WriterNamed("thumbnail.png")) return *png;
  Fail(Errc::kUnsupported, "the name must end in " + WrittenExtensions());
}

ExitStatus MakeThumbnail(const ThumbnailArguments& arguments, const FileTask& task,
                         Console& console) {
  console.SetOutput(task.output);
  const PictureWriter& writer = WriterOfThumbnail(task.output);
  const OutputFile output(task.output, arguments.files.MayReplace());
  CheckJsonHasRoom(arguments.common, output);
  console.SetInput(task.input);
  InputFile file(task.input, arguments.common.maxPixels);
  const DecompressResult decoded = DecodeFor(arguments, task.input, file);
  const Image picture =
      ReducedToFit(decoded.image, decoded.info.rows, decoded.info.cols, arguments.size);
  console.SetOutput(task.output);
  output.Put(writer.write(picture));
  if (arguments.common.json)
    console.Print(Json{{"input", task.input},
                       {"output", task.output},
                       {"rows", picture.Rows()},
                       {"columns", picture.Cols()}});
  return ExitStatus::kDone;
}

ExitStatus RunThumbnail(const ThumbnailArguments& arguments, Console& console) {
  CheckFileArguments(arguments.files);
  const FileWork work = [&](const FileTask& task, Console& voice) {
    return MakeThumbnail(arguments, task, voice);
  };
  const std::vector<std::string>& names = arguments.files.names;
  if (!arguments.files.folder)
    return RunOneFile(arguments.files, {names[0], names[1]}, work, console);
  const std::string extension(WriterOfThumbnail("").extension);
  const ManyFiles many{work, IsCompressedFile, [&](const std::string&) { return extension; }};
  return RunManyFiles(arguments.files, arguments.common, many, console);
}

void AddSizeOption(CLI::App& command, ThumbnailArguments& arguments) {
  AddParsedOption(command, "--size", "N", "The longest that a side may be, 1 to 4096 (256)",
                  [&](const std::string& text) { arguments.size = ParseSize(text); })
      ->group("General");
}

}  // namespace

void AddThumbnail(CLI::App& tool, Action& action) {
  auto arguments = std::make_shared<ThumbnailArguments>();
  CLI::App& command = AddCommand(tool, "thumbnail", "Make a small picture of a compressed file");
  AddFileArguments(command, arguments->files, "The compressed file", "The picture, a PNG");
  AddThreadsOption(command, arguments->files);
  AddSizeOption(command, *arguments);
  AddFormatOption(command, arguments->formats, false);
  AddCommonOptions(command, arguments->common);
  command.footer(std::string(kExamples) + "\n" + kManyFilesNote);
  SetAction<ThumbnailArguments>(command, action, arguments, &RunThumbnail);
}

}  // namespace marovia::cli
