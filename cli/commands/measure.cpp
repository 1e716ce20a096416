#include <string>

#include "marovia/measures.h"

#include "cli/arguments.h"
#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/file_kinds.h"
#include "cli/values.h"
#include "measures/measure_text.h"

namespace marovia::cli {
namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  marovia measure photo.pgm decoded.pgm\n"
    "  marovia measure photo.pgm decoded.pgm --region 80,200,210,310\n"
    "\n"
    "Prints the largest difference of two pixels, the root mean square error (for a\n"
    "region the mean square error) and the PSNR in decibels. A or B may be - for\n"
    "standard input.\n";

struct MeasureArguments {
  CommonOptions common;
  std::string source;
  std::string reconstruction;
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

Json JsonOf(const MeasureArguments& arguments, const ImagePair& images,
            const ErrorMeasures& measures) {
  return {{"source", arguments.source},
          {"reconstruction", arguments.reconstruction},
          {"sourceAlteration", JsonOfAlteration(images.source)},
          {"reconstructionAlteration", JsonOfAlteration(images.other)},
          {"region", JsonOf(arguments.region)},
          {"supNorm", JsonNumber(measures.supNorm)},
          {"meanSquareError", JsonNumber(measures.meanSquareError)},
          {"rootMeanSquare", measures.rootMeanSquare},
          {"psnr", measures.psnr ? Json(JsonNumber(*measures.psnr)) : Json()}};
}

ExitStatus RunMeasure(const MeasureArguments& arguments, Console& console) {
  const ImagePair images = ReadImagePair(arguments.source, arguments.reconstruction,
                                         {arguments.common.maxPixels, arguments.page}, console);
  const Image& source = images.source.image;
  console.SetInput(arguments.source);
  CheckRegion(arguments.region, source.Rows(), source.Cols());
  const ErrorMeasures measures = Measure(source, images.other.image, arguments.region);
  const MeasuredArea area = arguments.region ? MeasuredArea::kRegion : MeasuredArea::kImage;
  if (arguments.common.json) {
    console.Print(JsonOf(arguments, images, measures));
  } else {
    console.Print(TextOf(measures, area));
  }
  return ExitStatus::kDone;
}

}  // namespace

void AddMeasure(CLI::App& tool, Action& action) {
  auto arguments = std::make_shared<MeasureArguments>();
  CLI::App& command = AddCommand(tool, "measure", "Tell how far two images are apart");
  AddFile(command, "A", arguments->source, ReadFormatsText("The source image"));
  AddFile(command, "B", arguments->reconstruction, "The image to compare with it");
  AddRegionOption(command, arguments->region,
                  "Only rows R1 to R2, columns C1 to C2, all included, from 0")
      ->group("General");
  AddPageOption(command, arguments->page);
  AddCommonOptions(command, arguments->common);
  command.footer(kExamples);
  SetAction<MeasureArguments>(command, action, arguments, &RunMeasure);
}

}  // namespace marovia::cli
