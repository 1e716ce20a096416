#include "cli/compress_arguments.h"

#include <array>
#include <string>

#include "marovia/error.h"

namespace marovia::cli {
namespace {

FileKind ChosenKind(const CompressArguments& arguments) {
  const Method method = arguments.method.value_or(Method::kAswdr);
  const Coding coding =
      arguments.coding.value_or(method == Method::kAswdr2 ? Coding::kBinary : Coding::kArithmetic);
  if (!arguments.lossless) return KindOf(method, coding);
  if (coding == Coding::kArithmetic && method == Method::kAswdr) return FileKind::kAwg;
  if (coding == Coding::kArithmetic && method == Method::kContext) return FileKind::kAwh;
  Fail(Errc::kInvalidArgument,
       "--lossless works with --method aswdr or context, and --coding arithmetic only");
}

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
    Fail(Errc::kInvalidArgument, "--pad never is not for .awh files, which always pad");
}

void TakeWavelet(const std::string& text, CompressArguments& arguments) {
  arguments.bestWavelet = text == "best";
  if (!arguments.bestWavelet) arguments.wavelet = ParseWavelet(text);
}

// Whether an option says what no lossless file can be.
bool MakesLossy(const CompressArguments& arguments) {
  return arguments.rate || arguments.bytes || arguments.psnr || arguments.ratio ||
         arguments.method == Method::kWdr || arguments.method == Method::kAswdr2 ||
         arguments.coding == Coding::kBinary;
}

}  // namespace

CompressArguments WithKindOf(const std::string& output, CompressArguments arguments) {
  const auto kind = KindNamed(output);
  if (!kind || (arguments.lossless && *kind != FileKind::kAwh)) return arguments;
  if (*kind == FileKind::kAwg && !MakesLossy(arguments)) {
    arguments.lossless = true;
  } else {
    arguments.method = arguments.method.value_or(MethodOf(*kind));
    arguments.coding = arguments.coding.value_or(CodingOf(*kind));
  }
  return arguments;
}

CompressOptions OptionsOf(const CompressArguments& arguments) {
  CompressOptions options;
  options.kind = ChosenKind(arguments);
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

void AddCodingOptions(CLI::App& command, CompressArguments& arguments) {
  AddParsedOption(command, "--method", "wdr|aswdr|aswdr2|context",
                  "How positions are coded (by OUT, else aswdr)",
                  [&](const std::string& text) { arguments.method = ParseMethod(text); })
      ->group("Coding");
  AddParsedOption(command, "--coding", "binary|arithmetic",
                  "How symbols are written (by OUT, else arithmetic)",
                  [&](const std::string& text) { arguments.coding = ParseCoding(text); })
      ->group("Coding");
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
                      [&](const std::string& text) { arguments.psnr = ParsePsnr(text); })
          ->group("Size");
  CLI::Option* ratio =
      AddParsedOption(command, "--ratio", "R", "At most a byte for each R pixels, such as 20",
                      [&](const std::string& text) { arguments.ratio = ParseRatio(text); })
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

}  // namespace marovia::cli
