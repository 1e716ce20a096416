#include "cli/read_image.h"

#include <utility>

#include "marovia/error.h"

#include "cli/values.h"
#include "files/input_file.h"

namespace marovia::cli {

Image ReadImageFile(const std::string& name, const CommonOptions& options, Console& console) {
  console.SetInput(name);
  LoadedImage loaded = ReadImage(ReadInput(name, options.maxPixels), options.maxPixels);
  if (!loaded.alteration.empty()) console.Notice(loaded.alteration);
  return std::move(loaded.image);
}

ImagePair ReadImagePair(const std::string& source, const std::string& other,
                        const CommonOptions& options, Console& console) {
  if (source == kStandardStream && other == kStandardStream)
    Fail(Errc::kInvalidArgument, "only one of the two images can come from standard input");
  ImagePair pair;
  pair.source = ReadImageFile(source, options, console);
  pair.other = ReadImageFile(other, options, console);
  if (pair.other.SameShape(pair.source)) return pair;
  Fail(Errc::kIndex, SizeText(pair.other.Rows(), pair.other.Cols()) + ", but " + source + " has " +
                         SizeText(pair.source.Rows(), pair.source.Cols()));
}

}  // namespace marovia::cli
