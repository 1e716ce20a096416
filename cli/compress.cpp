#include <cmath>
#include <limits>
#include <string>

#include "base/number_text.h"
#include "cli/commands.h"
#include "cli/compress_arguments.h"
#include "cli/file_names.h"
#include "cli/file_run.h"
#include "cli/json_text.h"
#include "cli/read_image.h"
#include "cli/values.h"
#include "codec/report_text.h"
#include "files/output_file.h"

namespace marovia::cli {
namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  marovia compress photo.pgm photo.awf  0.5 bits per pixel\n"
    "  marovia compress photo.bmp photo --bytes 20000  at most 20000 bytes\n"
    "  marovia compress photo.bmp photo --psnr 40  as good as that, and no more\n"
    "  marovia compress scan.pgm scan.awg  every pixel as it was\n"
    "  marovia compress photo.pgm face.awf --region 80,200,210,310  most bits for one part\n"
    "  marovia compress *.pgm --output-dir packed -j 4  four files at a time\n"
    "\n"
    "The extension of OUT chooses the coder, and is added where OUT has none:\n"
    "  .awb  WDR, raw bits: the simplest to decode\n"
    "  .awa  WDR, arithmetic coding\n"
    "  .awd  ASWDR, raw bits\n"
    "  .awf  ASWDR, arithmetic coding: the best pictures at a given size\n"
    "  .awg  ASWDR, arithmetic coding: lossless\n"
    "  .awc  the second ASWDR, raw bits: nearly as good as .awf\n"
    "  .awh  context coding: better still, lossy or --lossless; any start is a file\n"
    "\n"
    "IN and OUT may be - for standard input and output; what is written is then\n"
    "an .awf unless options say otherwise.\n";

LoadedImage ReadSource(const CompressArguments& arguments, const std::string& input,
                       Console& console) {
  LoadedImage loaded = LoadImage(input, arguments.common, console);
  if (!loaded.alteration.empty()) {
    if (arguments.lossless && !arguments.convert)
      Fail(Errc::kUnsupported, "not lossless: " + loaded.alteration + " (--convert accepts that)");
    console.Notice(loaded.alteration);
  }
  CheckRegion(arguments.region, loaded.image.Rows(), loaded.image.Cols());
  return loaded;
}

bool IsMultiple(int side, int levels) {
  return side % (1 << levels) == 0;
}

void NoticeLevels(const CompressArguments& arguments, const Image& image,
                  const CompressResult& result, const Console& console) {
  const std::string size = SizeText(image.Rows(), image.Cols());
  if (arguments.levels && result.levels < *arguments.levels)
    console.Notice(std::to_string(*arguments.levels) + " levels asked for, " +
                   std::to_string(result.levels) + " used, the most for " + size);
  if (!arguments.pad &&
      !(IsMultiple(image.Rows(), result.levels) && IsMultiple(image.Cols(), result.levels)))
    console.Notice(size + " are no multiples of " + std::to_string(1 << result.levels) +
                   ": without padding the picture does not come back faithfully");
}

// Whether the file decodes to a whole picture of the image's shape; a lossless one to the image.
bool DecodesWell(const Image& image, const CompressOptions& coding, const Bytes& file) {
  DecompressOptions options;
  options.maxPixels = std::numeric_limits<std::int64_t>::max();  // padding may pass the limit
  const DecompressResult back = Decompress(file, coding.kind, options);
  if (back.truncated || !back.image.SameShape(image)) return false;
  return !coding.lossless || back.image == image;
}

double BitsPerPixel(const Image& image, const Bytes& file) {
  return 8.0 * static_cast<double>(file.size()) / static_cast<double>(image.Size());
}

void ReportResult(const CompressArguments& arguments, const FileTask& task,
                  const LoadedImage& source, const CompressResult& result, Console& console) {
  const Image& image = source.image;
  const double rate = BitsPerPixel(image, result.file);
  console.Tell("Compressed file: " + task.output + "\n" + std::to_string(result.file.size()) +
               " bytes, " + TrimmedNumberText(rate) + " bits per pixel, " +
               std::to_string(result.levels) + " levels\n");
  if (!arguments.common.json) return;
  const CompressOptions options = OptionsOf(arguments);
  console.Print(Json{{"input", task.input},
                     {"output", task.output},
                     {"kind", Extension(options.kind)},
                     {"method", NameOf(MethodOf(options.kind))},
                     {"coding", NameOf(CodingOf(options.kind))},
                     {"lossless", arguments.lossless},
                     {"wavelet", NameOf(result.wavelet)},
                     {"levels", result.levels},
                     {"rows", image.Rows()},
                     {"columns", image.Cols()},
                     {"alteration", JsonOfAlteration(source)},
                     {"bytes", result.file.size()},
                     {"bitsPerPixel", rate},
                     {"mean", JsonNumber(result.mean)},
                     {"firstThreshold", std::ldexp(1.0, result.exponent)},
                     {"verified", arguments.verify},
                     {"passes", JsonOf(result.passes)}});
}

std::int64_t BytesAt(double ratio, const Image& image) {
  return static_cast<std::int64_t>(static_cast<double>(image.Size()) / ratio);
}

ExitStatus CompressFile(const CompressArguments& arguments, const FileTask& task,
                        Console& console) {
  CompressOptions options = OptionsOf(arguments);
  console.SetOutput(task.output);
  const OutputFile output(task.output, arguments.files.force);
  CheckJsonHasRoom(arguments.common, output);

  const LoadedImage source = ReadSource(arguments, task.input, console);
  const Image& image = source.image;
  if (arguments.ratio) options.bytes = BytesAt(*arguments.ratio, image);
  options.onPass = [&](const PassReport& report) {
    console.Tell(PassReportText(report, image.Rows(), image.Cols(), false));
  };
  const CompressResult result = Compress(image, options);
  NoticeLevels(arguments, image, result, console);
  if (arguments.verify && !DecodesWell(image, options, result.file)) {
    console.Complain("verification failed: the file does not decode to the image; not written");
    return ExitStatus::kFailed;
  }

  console.SetOutput(task.output);
  output.Put(result.file);
  ReportResult(arguments, task, source, result, console);
  return ExitStatus::kDone;
}

ExitStatus CompressMany(const CompressArguments& arguments, Console& console) {
  const FileWork work = [&](const FileTask& task, Console& voice) {
    return CompressFile(arguments, task, voice);
  };
  return RunManyFiles(arguments.files, arguments.common, Extension(OptionsOf(arguments).kind), work,
                      console);
}

ExitStatus RunCompress(const CompressArguments& arguments, Console& console) {
  CheckFileArguments(arguments.files);
  if (arguments.files.outputDir) return CompressMany(arguments, console);
  const std::string& output = arguments.files.names[1];
  const CompressArguments whole = WithKindOf(output, arguments);
  const FileKind kind = OptionsOf(whole).kind;
  const FileWork work = [&](const FileTask& task, Console& voice) {
    return CompressFile(whole, task, voice);
  };
  console.SetOutput(output);
  return RunOneFile(whole.files, {whole.files.names[0], OutputName(output, kind)}, work, console);
}

void AddSafetyOptions(CLI::App& command, CompressArguments& arguments) {
  command
      .add_flag("--convert", arguments.convert,
                "With --lossless: accept an image that is not 8-bit grey and must be changed "
                "(colour, 16 bits, transparency)")
      ->group("General");
  command.add_flag("--verify", arguments.verify, "Decode the result before it is put in place")
      ->group("General");
  AddCommonOptions(command, arguments.common);
}

}  // namespace

void AddCompress(CLI::App& tool, Action& action) {
  auto arguments = std::make_shared<CompressArguments>();
  CLI::App& command = AddCommand(tool, "compress", "Compress an image");
  AddCodingOptions(command, *arguments);
  AddSizeOptions(command, *arguments);
  AddFileArguments(command, arguments->files, "The image: PGM, PPM or BMP", "The compressed file");
  AddSafetyOptions(command, *arguments);
  command.footer(std::string(kExamples) + "\n" + kManyFilesNote);
  SetAction<CompressArguments>(command, action, arguments, &RunCompress);
}

}  // namespace marovia::cli
