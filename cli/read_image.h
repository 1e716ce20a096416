// Reading an image that a command was given.
#pragma once

#include <string>

#include "marovia/image.h"

#include "cli/console.h"
#include "cli/options.h"

namespace marovia::cli {

// The image in the file of that name, or on standard input for "-".
LoadedImage LoadImage(const std::string& name, const CommonOptions& options, Console& console);

// The same; what was changed in reading it is noticed.
LoadedImage ReadImageFile(const std::string& name, const CommonOptions& options, Console& console);

// Both, of one shape. Error kIndex where they differ in it, kInvalidArgument where both are to come
// from standard input.
struct ImagePair {
  LoadedImage source;
  LoadedImage other;
};
ImagePair ReadImagePair(const std::string& source, const std::string& other,
                        const CommonOptions& options, Console& console);

}  // namespace marovia::cli
