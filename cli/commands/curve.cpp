#include <algorithm>
#include <cmath>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "marovia/codec.h"
#include "marovia/error.h"

#include "base/number_text.h"
#include "chart/line_chart.h"
#include "cli/arguments.h"
#include "cli/coder_names.h"
#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/file_kinds.h"
#include "cli/values.h"
#include "files/output_file.h"

namespace marovia::cli {
namespace {

constexpr int kSteps = 32;

std::vector<std::string> Split(const std::string& text) {
  std::vector<std::string> parts;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(',', begin), text.size());
    parts.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return parts;
}

std::vector<double> RatesBetween(double from, double to) {
  if (from >= to) Fail(Errc::kInvalidArgument, "--rates: the first rate must be below the last");
  std::vector<double> rates;
  rates.reserve(kSteps + 1);
  for (int n = 0; n < kSteps; ++n) rates.push_back(from * std::pow(to / from, n / double{kSteps}));
  rates.push_back(to);
  return rates;
}

std::vector<double> ParseRates(const std::string& text) {
  const std::size_t colon = text.find(':');
  if (colon != std::string::npos)
    return RatesBetween(ParseRate("--rates", text.substr(0, colon)),
                        ParseRate("--rates", text.substr(colon + 1)));
  std::vector<double> rates;
  for (const std::string& part : Split(text)) rates.push_back(ParseRate("--rates", part));
  std::ranges::sort(rates);
  return rates;
}

std::vector<FileKind> ParseCoders(const std::string& text) {
  std::vector<FileKind> kinds;
  for (const std::string& part : Split(text)) {
    const auto kind = KindOfExtension(part);
    if (!kind || IsLossless(*kind))
      RefuseValue("--coders", part, Listed(ExtensionsOf(LossyKinds()), "or"));
    kinds.push_back(*kind);
  }
  return kinds;
}

std::vector<WaveletKind> ParseWavelets(const std::string& text) {
  std::vector<WaveletKind> wavelets;
  const std::vector<std::string> parts = Split(text);
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const bool isHalf = parts[i] == "2+2" && i + 1 < parts.size();
    wavelets.push_back(ParseWavelet(isHalf ? parts[i] + "," + parts[i + 1] : parts[i]));
    if (isHalf) ++i;
  }
  return wavelets;
}

struct RatePoint {
  double rate;                // bits per pixel
  std::optional<float> psnr;  // none where the picture is the image
};

struct RateCurve {
  FileKind kind;
  WaveletKind wavelet;
  std::vector<RatePoint> points;
};

std::string LabelOf(const RateCurve& curve) {
  return std::string(Extension(curve.kind)) + "  " + std::string(NameOf(curve.wavelet));
}

// The kind of file gives the colour, the wavelet the dash.
Curve DrawnCurve(const RateCurve& curve) {
  const std::vector<FileKind> kinds = LossyKinds();
  const auto colour = std::ranges::find(kinds, curve.kind) - kinds.begin();
  Curve drawn{LabelOf(curve), {}, static_cast<int>(colour), static_cast<int>(curve.wavelet) - 1};
  for (const RatePoint& point : curve.points)
    if (point.psnr) drawn.points.push_back({point.rate, *point.psnr});
  return drawn;
}

RateCurve CurveOf(const Image& image, FileKind kind, WaveletKind wavelet,
                  const std::vector<double>& rates) {
  CompressOptions options;
  options.kind = kind;
  options.wavelet = wavelet;
  const auto psnrs = MeasureCurve(image, options, rates);
  RateCurve curve{kind, wavelet, {}};
  for (std::size_t i = 0; i < rates.size(); ++i) curve.points.push_back({rates[i], psnrs[i]});
  return curve;
}

// A line a point under a line of names, with tabs between; a PSNR without bound is "inf".
std::string TsvOf(const std::vector<RateCurve>& curves) {
  std::string text = "coder\twavelet\tbpp\tpsnr\n";
  for (const RateCurve& curve : curves) {
    for (const RatePoint& point : curve.points) {
      text += std::string(Extension(curve.kind)) + "\t" + std::string(NameOf(curve.wavelet)) +
              "\t" + TrimmedNumberText(point.rate) + "\t" +
              (point.psnr ? TrimmedNumberText(*point.psnr) : "inf") + "\n";
    }
  }
  return text;
}

std::string SvgOf(const std::vector<RateCurve>& curves, const std::string& title) {
  LineChart chart{title, "bits per pixel", "PSNR (dB)", {}};
  for (const RateCurve& curve : curves) chart.curves.push_back(DrawnCurve(curve));
  return SvgOf(chart);
}

constexpr const char* kExamples =
    "Examples:\n"
    "  marovia curve photo.pgm  a table on standard output\n"
    "  marovia curve photo.pgm curve.svg curve.tsv  a picture, and the table\n"
    "  marovia curve photo.pgm c.svg --coders awh --wavelets 9/7,5/3 --rates 0.1:4\n"
    "\n"
    "Draws how the PSNR grows with the bits per pixel. The image is compressed once for\n"
    "each coder and wavelet; every lower rate is a start of that file. OUT ends in .svg\n"
    "(a picture) or .tsv (a table). IN may be - for standard input.\n";

constexpr const char* kDefaultRates = "0.05:2";

struct CurveArguments {
  CommonOptions common;
  int page = 1;
  std::string input;
  std::vector<std::string> outputs;
  bool force = false;
  std::vector<FileKind> coders = LossyKinds();
  std::vector<WaveletKind> wavelets = {WaveletKind::kDaub97};
  std::vector<double> rates = ParseRates(kDefaultRates);
};

// One output that is yet to be written.
struct Target {
  std::string name;
  bool picture;
  OutputFile file;
};

std::vector<Target> TargetsOf(const CurveArguments& arguments, Console& console) {
  std::vector<Target> targets;
  for (const std::string& name : arguments.outputs) {
    console.SetOutput(name);
    const std::string extension = std::filesystem::path(name).extension();
    if (extension != ".svg" && extension != ".tsv")
      Fail(Errc::kInvalidArgument, "the name must end in .svg (a picture) or .tsv (a table)");
    targets.push_back({name, extension == ".svg", OutputFile(name, arguments.force)});
  }
  return targets;
}

std::vector<RateCurve> Measured(const CurveArguments& arguments, const Image& image,
                                const Console& console) {
  std::vector<RateCurve> curves;
  for (const WaveletKind wavelet : arguments.wavelets) {
    for (const FileKind kind : arguments.coders) {
      console.Tell("Measuring " + std::string(Extension(kind)) + " with " +
                   std::string(NameOf(wavelet)) + "\n");
      curves.push_back(CurveOf(image, kind, wavelet, arguments.rates));
    }
  }
  return curves;
}

Json JsonOf(const RateCurve& curve) {
  Json points = Json::array();
  for (const RatePoint& point : curve.points)
    points.push_back({{"bitsPerPixel", point.rate},
                      {"psnr", point.psnr ? Json(JsonNumber(*point.psnr)) : Json()}});
  return {{"kind", Extension(curve.kind)}, {"wavelet", NameOf(curve.wavelet)}, {"points", points}};
}

Json JsonOf(const CurveArguments& arguments, const Picture& source,
            const std::vector<RateCurve>& curves) {
  Json list = Json::array();
  for (const RateCurve& curve : curves) list.push_back(JsonOf(curve));
  return {{"input", arguments.input},
          {"outputs", arguments.outputs},
          {"rows", source.image.Rows()},
          {"columns", source.image.Cols()},
          {"alteration", JsonOfAlteration(source)},
          {"curves", list}};
}

ExitStatus RunCurve(const CurveArguments& arguments, Console& console) {
  const std::vector<Target> targets = TargetsOf(arguments, console);
  const Picture source =
      ReadImageFile(arguments.input, {arguments.common.maxPixels, arguments.page}, console);
  const Image& image = source.image;
  const std::vector<RateCurve> curves = Measured(arguments, image, console);
  const std::string title = std::filesystem::path(arguments.input).filename().string() + ", " +
                            std::to_string(image.Cols()) + " x " + std::to_string(image.Rows());
  for (const Target& target : targets) {
    console.SetOutput(target.name);
    const std::string text = target.picture ? SvgOf(curves, title) : TsvOf(curves);
    target.file.Put(Bytes(text.begin(), text.end()));
  }
  if (arguments.common.json) {
    console.Print(JsonOf(arguments, source, curves));
  } else if (targets.empty()) {
    console.Print(TsvOf(curves));
  }
  return ExitStatus::kDone;
}

void AddCurveOptions(CLI::App& command, CurveArguments& arguments) {
  AddParsedOption(command, "--coders", "LIST",
                  "Of " + Listed(ExtensionsOf(LossyKinds()), "and") + " (all of them)",
                  [&](const std::string& text) { arguments.coders = ParseCoders(text); })
      ->group("Curves");
  AddParsedOption(command, "--wavelets", "LIST", "Of 9/7, 5/3 and 2+2,2 (9/7)",
                  [&](const std::string& text) { arguments.wavelets = ParseWavelets(text); })
      ->group("Curves");
  AddParsedOption(command, "--rates", "FROM:TO",
                  "Bits per pixel (0.05:2), or a list such as 0.1,0.5,1",
                  [&](const std::string& text) { arguments.rates = ParseRates(text); })
      ->group("Curves");
}

}  // namespace

void AddCurve(CLI::App& tool, Action& action) {
  auto arguments = std::make_shared<CurveArguments>();
  CLI::App& command = AddCommand(tool, "curve", "Draw how the quality of an image grows");
  AddFile(command, "IN", arguments->input, ReadFormatsText("The image"));
  command.add_option("OUT", arguments->outputs, "A picture (.svg) or a table (.tsv)")
      ->group("Files");
  AddCurveOptions(command, *arguments);
  AddPageOption(command, arguments->page);
  AddForceOption(command, arguments->force);
  AddCommonOptions(command, arguments->common);
  command.footer(kExamples);
  SetAction<CurveArguments>(command, action, arguments, &RunCurve);
}

}  // namespace marovia::cli
