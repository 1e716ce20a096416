#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "marovia/codec.h"
#include "marovia/error.h"

#include "base/number_text.h"
#include "cli/arguments.h"
#include "cli/coder_names.h"
#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/file_kinds.h"
#include "cli/many_files.h"
#include "cli/values.h"
#include "codec/coders.h"
#include "codec/report_text.h"
#include "files/output_file.h"

namespace marovia::cli {
namespace {

constexpr float kMostShare = 0.99F;

struct CompressArguments {
  CommonOptions common;
  FileArguments files;
  int page = 1;
  std::optional<std::string> method;
  std::optional<std::string> coding;
  std::optional<WaveletKind> wavelet;
  bool bestWavelet = false;
  std::optional<int> levels;
  std::optional<double> rate;
  std::optional<std::int64_t> bytes;
  std::optional<double> psnr;
  std::optional<double> ratio;
  std::optional<Region> region;
  std::optional<float> share;
  bool lossless = false;
  bool pad = true;
  bool convert = false;
  bool verify = false;
};

void CheckWavelet(const CompressArguments& arguments) {
  if (arguments.bestWavelet && !arguments.lossless)
    Fail(Errc::kInvalidArgument,
         "--wavelet best goes with --lossless: it codes with both integer wavelets");
  if (arguments.lossless && arguments.wavelet == WaveletKind::kDaub97)
    Fail(Errc::kInvalidArgument,
         "--lossless needs an integer wavelet: --wavelet 5/3 or --wavelet 2+2,2, not 9/7");
}

void CheckPad(const CompressArguments& arguments, FileKind kind) {
  if (kind == FileKind::kAwh && !arguments.pad)
    Fail(Errc::kInvalidArgument,
         "--pad never is not for .awh files, which always pad; --method aswdr takes it");
}

void TakeWavelet(const std::string& text, CompressArguments& arguments) {
  arguments.bestWavelet = text == "best";
  if (!arguments.bestWavelet) arguments.wavelet = ParseWavelet(text);
}

// Whether an option says what no file of this lossless kind can be.
bool MakesLossy(const CompressArguments& arguments, FileKind kind) {
  return arguments.rate || arguments.bytes || arguments.psnr || arguments.ratio ||
         arguments.method.value_or(MethodOf(kind)) != MethodOf(kind) ||
         arguments.coding.value_or(CodingOf(kind)) != CodingOf(kind);
}

// The choices, with those that no option made taken from the extension of OUT. One that an option
// contradicts is left to OutputName, which refuses it.
CompressArguments WithKindOf(const std::string& output, CompressArguments arguments) {
  const auto kind = KindNamed(output);
  if (!kind || (arguments.lossless && !CanBeLossless(*kind))) return arguments;
  if (IsLossless(*kind) && !MakesLossy(arguments, *kind)) arguments.lossless = true;
  arguments.method = arguments.method.value_or(MethodOf(*kind));
  arguments.coding = arguments.coding.value_or(CodingOf(*kind));
  return arguments;
}

// Error kInvalidArgument where the choices do not go together. A ratio waits for the image.
CompressOptions OptionsOf(const CompressArguments& arguments) {
  CompressOptions options;
  options.kind = ChosenKind(arguments.method, arguments.coding, arguments.lossless);
  CheckWavelet(arguments);
  CheckPad(arguments, options.kind);
  options.lossless = arguments.lossless;
  options.wavelet = arguments.wavelet;
  options.bestWavelet = arguments.bestWavelet;
  options.levels = arguments.levels;
  options.rate = arguments.rate.value_or(options.rate);
  options.bytes = arguments.bytes;
  options.psnr = arguments.psnr;
  options.region = arguments.region;
  options.share = arguments.share.value_or(options.share);
  options.pad = arguments.pad;
  return options;
}

int ParseLevels(const std::string& text) {
  const std::int64_t levels = ParseCount("--levels", text);
  return static_cast<int>(std::min<std::int64_t>(levels, std::numeric_limits<int>::max()));
}

float ParseShare(const std::string& text) {
  const auto share = WholeNumber<float>(text);
  if (!share || !(*share >= 0 && *share <= kMostShare))
    RefuseValue("--share", text, "a number from 0 to 0.99");
  return *share;
}

bool ParsePad(const std::string& text) {
  if (text != "auto" && text != "never") RefuseValue("--pad", text, "auto or never");
  return text == "auto";
}

// One of some names.
void AddNameOption(CLI::App& command, const std::string& option,
                   const std::vector<std::string>& names, std::optional<std::string>& chosen,
                   const std::string& description) {
  AddParsedOption(command, option, Joined(names, "|"), description,
                  [&chosen, option, names](const std::string& text) {
                    if (std::ranges::find(names, text) == names.end())
                      RefuseValue(option, text, Joined(names, " or "));
                    chosen = text;
                  })
      ->group("Coding");
}

void AddCodingOptions(CLI::App& command, CompressArguments& arguments) {
  AddNameOption(command, "--method", MethodNames(), arguments.method,
                "How positions are coded (by OUT, else context)");
  AddNameOption(command, "--coding", CodingNames(), arguments.coding,
                "How symbols are written (by OUT, else arithmetic)");
  AddParsedOption(
      command, "--wavelet", "9/7|5/3|2+2,2|best",
      "The transform (9/7; 2+2,2 where lossless,\nor best: both, and the shorter is kept)",
      [&](const std::string& text) { TakeWavelet(text, arguments); })
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
  CLI::Option* lossless = command
                              .add_flag("--lossless", arguments.lossless,
                                        "Keep every pixel, as OUT.awg does and OUT.awh can")
                              ->group("Size");
  CLI::Option* psnr =
      AddParsedOption(command, "--psnr", "DB", "The least PSNR, in as few bytes as will do",
                      [&](const std::string& text) {
                        arguments.psnr = ParsePositive("--psnr", text,
                                                       "a number of decibels above 0, such as 40");
                      })
          ->group("Size");
  CLI::Option* ratio =
      AddParsedOption(command, "--ratio", "R", "At most a byte for each R pixels, such as 20",
                      [&](const std::string& text) {
                        arguments.ratio =
                            ParsePositive("--ratio", text, "a number above 0, such as 20");
                      })
          ->group("Size");
  const std::array targets = {rate, bytes, psnr, ratio, lossless};
  for (std::size_t i = 0; i < targets.size(); ++i)
    for (std::size_t k = 0; k < i; ++k) targets.at(i)->excludes(targets.at(k));
  CLI::Option* region =
      AddRegionOption(command, arguments.region,
                      "Spend most bits on rows R1 to R2, columns C1 to C2, all included, from 0")
          ->excludes(psnr)
          ->group("Size");
  AddParsedOption(command, "--share", "P", "Part of the bits that the region gets (0.9)",
                  [&](const std::string& text) { arguments.share = ParseShare(text); })
      ->needs(region)
      ->group("Size");
}

Picture ReadSource(const CompressArguments& arguments, const std::string& input, Console& console) {
  Picture loaded = LoadImage(input, {arguments.common.maxPixels, arguments.page}, console);
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

void ReportResult(const CompressArguments& arguments, const FileTask& task, const Picture& source,
                  const CompressResult& result, Console& console) {
  const Image& image = source.image;
  const double rate = BitsPerPixel(image, result.file);
  console.Tell("Compressed file: " + task.output + "\n" + std::to_string(result.file.size()) +
               " bytes, " + TrimmedNumberText(rate) + " bits per pixel, " +
               std::to_string(result.levels) + " levels\n");
  if (!arguments.common.json) return;
  Json json = {{"input", task.input}, {"output", task.output}};
  json.update(JsonOf(OptionsOf(arguments).kind));
  json["lossless"] = arguments.lossless;
  json.update({{"wavelet", NameOf(result.wavelet)},
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
  console.Print(json);
}

std::int64_t BytesAt(double ratio, const Image& image) {
  return static_cast<std::int64_t>(static_cast<double>(image.Size()) / ratio);
}

ExitStatus CompressFile(const CompressArguments& arguments, const FileTask& task,
                        Console& console) {
  CompressOptions options = OptionsOf(arguments);
  console.SetOutput(task.output);
  const OutputFile output(task.output, arguments.files.MayReplace());
  CheckJsonHasRoom(arguments.common, output);

  const Picture source = ReadSource(arguments, task.input, console);
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
  const std::string extension(Extension(OptionsOf(arguments).kind));
  const ManyFiles many{work, IsImageFile, [&](const std::string&) { return extension; }};
  return RunManyFiles(arguments.files, arguments.common, many, console);
}

ExitStatus RunCompress(const CompressArguments& arguments, Console& console) {
  CheckFileArguments(arguments.files);
  if (arguments.files.folder) return CompressMany(arguments, console);
  const std::string& output = arguments.files.names[1];
  const CompressArguments whole = WithKindOf(output, arguments);
  const FileKind kind = OptionsOf(whole).kind;
  const FileWork work = [&](const FileTask& task, Console& voice) {
    return CompressFile(whole, task, voice);
  };
  console.SetOutput(output);
  return RunOneFile(whole.files, {whole.files.names[0], OutputName(output, kind)}, work, console);
}

constexpr const char* kExamples =
    "Examples:\n"
    "  marovia compress photo.pgm photo.awh  0.5 bits per pixel\n"
    "  marovia compress photo.bmp photo --bytes 20000  at most 20000 bytes\n"
    "  marovia compress photo.bmp photo --psnr 40  as good as that, and no more\n"
    "  marovia compress scan.pgm scan.awh --lossless  every pixel as it was\n"
    "  marovia compress photo.pgm face.awh --region 80,200,210,310  most bits for one part\n"
    "  marovia compress *.pgm --output-dir packed -j 4  four files at a time\n"
    "  marovia compress -r photos --output-dir packed --mirror photos  with its folders\n";

constexpr const char* kKindsNote =
    "Context coding gives the best pictures at a given size, and any start of such a file\n"
    "is a file. Of the others ASWDR with arithmetic coding is the best, its second version\n"
    "nearly as good with raw bits, and WDR with raw bits the simplest to decode.\n"
    "\n"
    "IN and OUT may be - for standard input and output; what is written is then\n"
    "an .awh unless options say otherwise.\n";

std::string FooterText() {
  std::string text = std::string(kExamples) +
                     "\nThe extension of OUT chooses the coder, and is added where OUT has none:\n";
  for (const FileKind kind : AllKinds())
    text += "  ." + std::string(Extension(kind)) + "  " + std::string(CoderOf(kind).name) + "\n";
  return text + "\n" + kKindsNote + "\n" + kManyFilesNote;
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
  AddFileArguments(command, arguments->files, ReadFormatsText("The image"), "The compressed file");
  AddPageOption(command, arguments->page);
  AddSafetyOptions(command, *arguments);
  command.footer(FooterText());
  SetAction<CompressArguments>(command, action, arguments, &RunCompress);
}

}  // namespace marovia::cli
