#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "marovia/error.h"
#include "marovia/measures.h"

#include "cli/arguments.h"
#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/file_kinds.h"
#include "cli/help.h"
#include "cli/many_files.h"
#include "cli/values.h"
#include "measures/measure_text.h"

namespace marovia::cli {
namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  marovia measure photo.pgm decoded.pgm\n"
    "  marovia measure photo.pgm decoded.pgm --region 80,200,210,310\n"
    "  marovia measure -r photos --against decoded --mirror photos\n"
    "\n"
    "Prints the largest difference of two pixels, the root mean square error (for a\n"
    "region the mean square error) and the PSNR in decibels. A or B may be - for\n"
    "standard input.\n"
    "\n"
    "With --against each A is compared with the image of its name in DIR, whatever the\n"
    "extension of that. The measures come under the name of A, or with --json as one\n"
    "line each. One that fails is named and stops no other.\n";

struct MeasureArguments {
  CommonOptions common;
  FileArguments files;
  int page = 1;
  std::optional<Region> region;
};

std::string TextOf(const ErrorMeasures& measures, MeasuredArea area) {
  const std::string psnr =
      measures.psnr
          ? PsnrText(measures, area)
          : std::string(area == MeasuredArea::kRegion ? "ROI " : "") + "PSNR error:  identical";
  return SupNormText(measures, area) + "\n" + MeanSquareText(measures, area) + "\n" + psnr + "\n";
}

Json JsonOf(const std::optional<Region>& region) {
  if (!region) return {};
  return {{"row1", region->row1},
          {"column1", region->col1},
          {"row2", region->row2},
          {"column2", region->col2}};
}

Json JsonOf(const MeasureArguments& arguments, const FileTask& pair, const ImagePair& images,
            const ErrorMeasures& measures) {
  return {{"source", pair.input},
          {"reconstruction", pair.output},
          {"sourceAlteration", JsonOfAlteration(images.source)},
          {"reconstructionAlteration", JsonOfAlteration(images.other)},
          {"region", JsonOf(arguments.region)},
          {"supNorm", JsonNumber(measures.supNorm)},
          {"meanSquareError", JsonNumber(measures.meanSquareError)},
          {"rootMeanSquare", measures.rootMeanSquare},
          {"psnr", measures.psnr ? Json(JsonNumber(*measures.psnr)) : Json()}};
}

ExitStatus MeasurePair(const MeasureArguments& arguments, const FileTask& pair, Console& console) {
  const ImagePair images =
      ReadImagePair(pair.input, pair.output, {arguments.common.maxPixels, arguments.page}, console);
  const Image& source = images.source.image;
  console.SetInput(pair.input);
  CheckRegion(arguments.region, source.Rows(), source.Cols());
  const ErrorMeasures measures = Measure(source, images.other.image, arguments.region);
  const MeasuredArea area = arguments.region ? MeasuredArea::kRegion : MeasuredArea::kImage;
  if (arguments.common.json) {
    console.Print(JsonOf(arguments, pair, images, measures));
  } else {
    console.Print((arguments.files.folder ? TitleOf(pair.input) : "") + TextOf(measures, area));
  }
  return ExitStatus::kDone;
}

// The one image of that name, which has no extension yet.
std::string ImageNamed(const std::string& name) {
  std::vector<std::string> found;
  for (const std::string_view extension : ReadExtensions()) {
    std::string whole = name + "." + std::string(extension);
    if (std::filesystem::exists(whole)) found.push_back(std::move(whole));
  }
  if (found.size() > 1)
    Fail(Errc::kInvalidArgument, "both " + found[0] + " and " + found[1] + " go with it");
  if (found.size() == 1) return found[0];
  Fail(Errc::kIo, "there is no image " + name + ".* that goes with it");
}

ExitStatus RunMeasure(const MeasureArguments& arguments, Console& console) {
  const FileArguments& files = arguments.files;
  CheckFileArguments(files, {"A", "B", "--against"});
  if (!files.folder) return MeasurePair(arguments, {files.names[0], files.names[1]}, console);
  const FileWork work = [&](const FileTask& task, Console& voice) {
    voice.SetInput(task.input);
    return MeasurePair(arguments, {task.input, ImageNamed(task.output)}, voice);
  };
  return RunManyFiles(files, arguments.common, {work, IsImageFile, {}}, console);
}

}  // namespace

void AddMeasure(CLI::App& tool, Action& action) {
  auto arguments = std::make_shared<MeasureArguments>();
  CLI::App& command = AddCommand(tool, "measure", "Tell how far two images are apart");
  AddName(command, arguments->files, "A", ReadFormatsText("The source image"));
  AddName(command, arguments->files, "B", "The image to compare with it");
  AddMoreNames(command, arguments->files);
  AddInputOptions(
      command, arguments->files,
      AddParsedOption(command, "--against", "DIR", "Compare each A with its like in DIR",
                      [files = &arguments->files](const std::string& text) {
                        files->folder = NotEmpty("--against", text);
                      })
          ->group("Many files"));
  AddRegionOption(command, arguments->region,
                  "Only rows R1 to R2, columns C1 to C2, all included, from 0")
      ->group("General");
  AddPageOption(command, arguments->page);
  AddCommonOptions(command, arguments->common);
  command.formatter(std::make_shared<HelpFormatter>(
      std::vector<std::string>{"[OPTIONS] A B", "[OPTIONS] A... --against DIR"}));
  command.footer(kExamples);
  SetAction<MeasureArguments>(command, action, arguments, &RunMeasure);
}

}  // namespace marovia::cli
