#include "cli/read_image.h"

#include "marovia/error.h"

#include "cli/content.h"
#include "cli/values.h"
#include "files/input_file.h"

namespace marovia::cli {

LoadedImage LoadImage(const std::string& name, const CommonOptions& options, Console& console) {
  console.SetInput(name);
  const Bytes file = ReadInput(name, options.maxPixels);
  CheckIsNoCompressedFile(file, name, options.maxPixels);
  return ReadImage(file, options.maxPixels);
}

LoadedImage ReadImageFile(const std::string& name, const CommonOptions& options, Console& console) {
  LoadedImage loaded = LoadImage(name, options, console);
  if (!loaded.alteration.empty()) console.Notice(loaded.alteration);
  return loaded;
}

ImagePair ReadImagePair(const std::string& source, const std::string& other,
                        const CommonOptions& options, Console& console) {
  if (source == kStandardStream && other == kStandardStream)
    Fail(Errc::kInvalidArgument, "only one of the two images can come from standard input");
  ImagePair pair{ReadImageFile(source, options, console), ReadImageFile(other, options, console)};
  const Image& first = pair.source.image;
  const Image& second = pair.other.image;
  if (second.SameShape(first)) return pair;
  Fail(Errc::kIndex, SizeText(second.Rows(), second.Cols()) + ", but " + source + " has " +
                         SizeText(first.Rows(), first.Cols()));
}

}  // namespace marovia::cli
