#include <string>

#include "marovia/measures.h"

#include "cli/arguments.h"
#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/file_kinds.h"
#include "cli/values.h"
#include "files/output_file.h"

namespace marovia::cli {
namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  marovia difference photo.pgm decoded.pgm difference.pgm\n"
    "  marovia difference photo.pgm decoded.pgm difference.bmp --gain 16\n"
    "\n"
    "Where the images agree the picture is mid-grey (128); where B is lighter than A it\n"
    "is lighter, where B is darker it is darker, G times as much. A or B, and OUT, may\n"
    "be - for standard input and output.\n";

struct DifferenceArguments {
  CommonOptions common;
  std::string source;
  std::string other;
  std::string output;
  int page = 1;
  bool force = false;
  double gain = 4;
};

ExitStatus RunDifference(const DifferenceArguments& arguments, Console& console) {
  console.SetOutput(arguments.output);
  const PictureWriter& writer = WriterFor(arguments.output, nullptr);
  const OutputFile output(arguments.output, arguments.force);
  CheckJsonHasRoom(arguments.common, output);
  const ImagePair images = ReadImagePair(arguments.source, arguments.other,
                                         {arguments.common.maxPixels, arguments.page}, console);
  const Image& source = images.source.image;
  const Image& other = images.other.image;
  const Image picture = DifferenceImage(source, other, arguments.gain);
  console.SetOutput(arguments.output);
  output.Put(writer.write(picture));
  if (arguments.common.json)
    console.Print(Json{{"source", arguments.source},
                       {"reconstruction", arguments.other},
                       {"sourceAlteration", JsonOfAlteration(images.source)},
                       {"reconstructionAlteration", JsonOfAlteration(images.other)},
                       {"output", arguments.output},
                       {"gain", arguments.gain},
                       {"supNorm", JsonNumber(Measure(source, other).supNorm)}});
  return ExitStatus::kDone;
}

void AddGainOption(CLI::App& command, DifferenceArguments& arguments) {
  AddParsedOption(command, "--gain", "G", "How much larger differences are made (4)",
                  [&](const std::string& text) {
                    arguments.gain = ParsePositive("--gain", text, "a number above 0, such as 4");
                  })
      ->group("General");
}

}  // namespace

void AddDifference(CLI::App& tool, Action& action) {
  auto arguments = std::make_shared<DifferenceArguments>();
  CLI::App& command = AddCommand(tool, "difference", "Show where two images differ");
  AddFile(command, "A", arguments->source, ReadFormatsText("The source image"));
  AddFile(command, "B", arguments->other, "The image to compare with it");
  AddFile(command, "OUT", arguments->output, "The picture: " + WrittenExtensions());
  AddGainOption(command, *arguments);
  AddPageOption(command, arguments->page);
  AddForceOption(command, arguments->force);
  AddCommonOptions(command, arguments->common);
  command.footer(kExamples);
  SetAction<DifferenceArguments>(command, action, arguments, &RunDifference);
}

}  // namespace marovia::cli
