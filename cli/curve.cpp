#include <filesystem>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/json_text.h"
#include "cli/rate_curve.h"
#include "cli/read_image.h"
#include "cli/value_lists.h"
#include "cli/values.h"
#include "files/output_file.h"

namespace marovia::cli {
namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  marovia curve photo.pgm  a table on standard output\n"
    "  marovia curve photo.pgm curve.svg curve.tsv  a picture, and the table\n"
    "  marovia curve photo.pgm c.svg --coders awf --wavelets 9/7,5/3 --rates 0.1:4\n"
    "\n"
    "Draws how the PSNR grows with the bits per pixel. The image is compressed once for\n"
    "each coder and wavelet; every lower rate is a start of that file. OUT ends in .svg\n"
    "(a picture) or .tsv (a table). IN may be - for standard input.\n";

constexpr const char* kDefaultRates = "0.05:2";

struct CurveArguments {
  CommonOptions common;
  std::string input;
  std::vector<std::string> outputs;
  bool force = false;
  std::vector<FileKind> coders = {FileKind::kAwb, FileKind::kAwa, FileKind::kAwd, FileKind::kAwf,
                                  FileKind::kAwh};
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
      curves.push_back(MeasureCurve(image, kind, wavelet, arguments.rates));
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

Json JsonOf(const CurveArguments& arguments, const LoadedImage& source,
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
  const LoadedImage source = ReadImageFile(arguments.input, arguments.common, console);
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
  AddParsedOption(command, "--coders", "LIST", "Of awb, awa, awc, awd, awf and awh (all but awc)",
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
  AddFile(command, "IN", arguments->input, "The image: PGM, PPM or BMP");
  command.add_option("OUT", arguments->outputs, "A picture (.svg) or a table (.tsv)")
      ->group("Files");
  AddCurveOptions(command, *arguments);
  AddForceOption(command, arguments->force);
  AddCommonOptions(command, arguments->common);
  command.footer(kExamples);
  SetAction<CurveArguments>(command, action, arguments, &RunCurve);
}

}  // namespace marovia::cli
