#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "base/number_text.h"
#include "cli/commands.h"
#include "cli/file_names.h"
#include "cli/json_text.h"
#include "cli/values.h"
#include "codec/report_text.h"
#include "files/input_file.h"
#include "files/output_file.h"

namespace marovia::cli {
namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  marovia compress photo.pgm photo.awf                  0.5 bits per pixel\n"
    "  marovia compress photo.bmp photo --bytes 20000        at most 20000 bytes\n"
    "  marovia compress scan.pgm scan.awg --lossless         every pixel as it was\n"
    "  marovia compress photo.pgm face.awf --region 80,200,210,310\n"
    "                                                        most bits for one part\n"
    "\n"
    "IN is a PGM, PPM or BMP image. The extension of OUT follows from the method and\n"
    "the coding, and is added where OUT has none:\n"
    "  .awb  wdr, binary        .awa  wdr, arithmetic\n"
    "  .awd  aswdr, binary      .awf  aswdr, arithmetic      .awg  lossless\n"
    "IN and OUT may be - for standard input and output.\n";

struct CompressArguments {
  CommonOptions common;
  std::string input;
  std::string output;
  bool force = false;
  std::optional<Method> method;
  std::optional<Coding> coding;
  std::optional<WaveletKind> wavelet;
  std::optional<int> levels;
  std::optional<double> rate;
  std::optional<std::int64_t> bytes;
  std::optional<Region> region;
  std::optional<float> share;
  bool lossless = false;
  bool pad = true;
  bool convert = false;
  bool verify = false;
};

FileKind ChosenKind(const CompressArguments& arguments) {
  const Method method = arguments.method.value_or(Method::kAswdr);
  const Coding coding = arguments.coding.value_or(Coding::kArithmetic);
  if (!arguments.lossless) return KindOf(method, coding);
  if (method == Method::kWdr || coding == Coding::kBinary)
    Fail(Errc::kInvalidArgument, "--lossless works with --method aswdr --coding arithmetic only");
  return FileKind::kAwg;
}

WaveletKind ChosenWavelet(const CompressArguments& arguments) {
  if (!arguments.lossless) return arguments.wavelet.value_or(WaveletKind::kDaub97);
  const WaveletKind wavelet = arguments.wavelet.value_or(WaveletKind::kInteger53);
  if (wavelet == WaveletKind::kDaub97)
    Fail(Errc::kInvalidArgument,
         "--lossless needs an integer wavelet: --wavelet 5/3 or --wavelet 2+2,2, not 9/7");
  return wavelet;
}

CompressOptions OptionsOf(const CompressArguments& arguments) {
  CompressOptions options;
  options.kind = ChosenKind(arguments);
  options.wavelet = ChosenWavelet(arguments);
  options.levels = arguments.levels;
  options.rate = arguments.rate.value_or(options.rate);
  options.bytes = arguments.bytes;
  options.region = arguments.region;
  options.share = arguments.share.value_or(options.share);
  options.pad = arguments.pad;
  return options;
}

Image ReadSource(const CompressArguments& arguments, Console& console) {
  console.SetInput(arguments.input);
  const Bytes file = ReadInput(arguments.input, arguments.common.maxPixels);
  LoadedImage loaded = ReadImage(file, arguments.common.maxPixels);
  if (!loaded.alteration.empty()) {
    if (arguments.lossless && !arguments.convert)
      Fail(Errc::kUnsupported, "not lossless: " + loaded.alteration + " (--convert accepts that)");
    console.Notice(loaded.alteration);
  }
  CheckRegion(arguments.region, loaded.image.Rows(), loaded.image.Cols());
  return std::move(loaded.image);
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
bool DecodesWell(const Image& image, FileKind kind, const Bytes& file) {
  DecompressOptions options;
  options.maxPixels = std::numeric_limits<std::int64_t>::max();  // padding may pass the limit
  const DecompressResult back = Decompress(file, kind, options);
  if (back.truncated || !back.image.SameShape(image)) return false;
  return kind != FileKind::kAwg || back.image == image;
}

double BitsPerPixel(const Image& image, const Bytes& file) {
  return 8.0 * static_cast<double>(file.size()) / static_cast<double>(image.Size());
}

void ReportResult(const CompressArguments& arguments, const std::string& output, const Image& image,
                  const CompressResult& result, Console& console) {
  const double rate = BitsPerPixel(image, result.file);
  console.Tell("Compressed file: " + output + "\n" + std::to_string(result.file.size()) +
               " bytes, " + TrimmedNumberText(rate) + " bits per pixel, " +
               std::to_string(result.levels) + " levels\n");
  if (!arguments.common.json) return;
  const CompressOptions options = OptionsOf(arguments);
  console.Print(JsonText({{"input", arguments.input},
                          {"output", output},
                          {"kind", Extension(options.kind)},
                          {"method", NameOf(MethodOf(options.kind))},
                          {"coding", NameOf(CodingOf(options.kind))},
                          {"lossless", arguments.lossless},
                          {"wavelet", NameOf(options.wavelet)},
                          {"levels", result.levels},
                          {"rows", image.Rows()},
                          {"columns", image.Cols()},
                          {"bytes", result.file.size()},
                          {"bitsPerPixel", rate},
                          {"mean", JsonNumber(result.mean)},
                          {"firstThreshold", std::ldexp(1.0, result.exponent)},
                          {"verified", arguments.verify},
                          {"passes", JsonOf(result.passes)}}));
}

ExitStatus RunCompress(const CompressArguments& arguments, Console& console) {
  CompressOptions options = OptionsOf(arguments);
  console.SetOutput(arguments.output);
  const std::string name = OutputName(arguments.output, options.kind);
  console.SetOutput(name);
  const OutputFile output(name, arguments.force);
  CheckJsonHasRoom(arguments.common, output);

  const Image image = ReadSource(arguments, console);
  options.onPass = [&](const PassReport& report) {
    console.Tell(PassReportText(report, image.Rows(), image.Cols(), false));
  };
  const CompressResult result = Compress(image, options);
  NoticeLevels(arguments, image, result, console);
  if (arguments.verify && !DecodesWell(image, options.kind, result.file)) {
    console.Complain("verification failed: the file does not decode to the image; not written");
    return ExitStatus::kFailed;
  }

  console.SetOutput(name);
  output.Put(result.file);
  ReportResult(arguments, name, image, result, console);
  return ExitStatus::kDone;
}

void AddCodingOptions(CLI::App& command, CompressArguments& arguments) {
  AddParsedOption(command, "--method", "wdr|aswdr", "How positions are coded (aswdr)",
                  [&](const std::string& text) { arguments.method = ParseMethod(text); })
      ->group("Coding");
  AddParsedOption(command, "--coding", "binary|arithmetic", "How symbols are written (arithmetic)",
                  [&](const std::string& text) { arguments.coding = ParseCoding(text); })
      ->group("Coding");
  AddParsedOption(command, "--wavelet", "9/7|5/3|2+2,2", "The transform (9/7; 5/3 where lossless)",
                  [&](const std::string& text) { arguments.wavelet = ParseWavelet(text); })
      ->group("Coding");
  AddParsedOption(command, "--levels", "N", "Levels of the transform (chosen by the size)",
                  [&](const std::string& text) { arguments.levels = ParseLevels(text); })
      ->group("Coding");
  AddParsedOption(command, "--pad", "auto|never", "Pad the sides to what the levels need (auto)",
                  [&](const std::string& text) { arguments.pad = ParsePad(text); })
      ->group("Coding");
}

void AddSizeOptions(CLI::App& command, CompressArguments& arguments) {
  CLI::Option* rate =
      AddRateOption(command, arguments.rate, "Bits per pixel to spend (0.5)")->group("Size");
  CLI::Option* bytes =
      AddBytesOption(command, arguments.bytes, "The most bytes that OUT may have")->group("Size");
  CLI::Option* lossless = command.add_flag("--lossless", arguments.lossless, "Keep every pixel")
                              ->option_text(" ")
                              ->group("Size");
  rate->excludes(bytes, lossless);
  bytes->excludes(lossless);
  CLI::Option* region =
      AddRegionOption(command, arguments.region,
                      "Rows R1 to R2, columns C1 to C2, from 0:\nspend most bits there")
          ->group("Size");
  AddParsedOption(command, "--share", "P", "Part of the bits that the region gets (0.9)",
                  [&](const std::string& text) { arguments.share = ParseShare(text); })
      ->needs(region)
      ->group("Size");
}

void AddSafetyOptions(CLI::App& command, CompressArguments& arguments) {
  command
      .add_flag("--convert", arguments.convert,
                "With --lossless: turn colour and 16 bits to 8-bit grey")
      ->group("General");
  command.add_flag("--verify", arguments.verify, "Decode the result before it is put in place")
      ->group("General");
  AddForceOption(command, arguments.force);
  AddCommonOptions(command, arguments.common);
}

}  // namespace

void AddCompress(CLI::App& tool, Action& action) {
  auto arguments = std::make_shared<CompressArguments>();
  CLI::App& command = AddCommand(tool, "compress", "Compress an image");
  AddFile(command, "IN", arguments->input, "The image: PGM, PPM or BMP");
  AddFile(command, "OUT", arguments->output, "The compressed file");
  AddCodingOptions(command, *arguments);
  AddSizeOptions(command, *arguments);
  AddSafetyOptions(command, *arguments);
  command.footer(kExamples);
  SetAction<CompressArguments>(command, action, arguments, &RunCompress);
}

}  // namespace marovia::cli
