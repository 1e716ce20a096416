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
  if (method != Method::kAswdr || coding == Coding::kBinary)
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

}  // namespace

CompressOptions OptionsOf(const CompressArguments& arguments) {
  CompressOptions options;
  options.kind = ChosenKind(arguments);
  options.wavelet = ChosenWavelet(arguments);
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
  AddParsedOption(command, "--method", "wdr|aswdr|aswdr2", "How positions are coded (aswdr)",
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
                      "Rows R1 to R2, columns C1 to C2, from 0:\nspend most bits there")
          ->excludes(psnr)
          ->group("Size");
  AddParsedOption(command, "--share", "P", "Part of the bits that the region gets (0.9)",
                  [&](const std::string& text) { arguments.share = ParseShare(text); })
      ->needs(region)
      ->group("Size");
}

}  // namespace marovia::cli
