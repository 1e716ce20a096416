// Reading a file, or standard input, whole.
#pragma once

#include <cstdint>
#include <string>

#include "marovia/image.h"

namespace marovia {

inline constexpr const char* kStandardStream = "-";

// The bytes of the file `name`, or of standard input for "-". Error kIo where it cannot be read or
// is a folder; kLimit where it is longer than any file of an image of maxPixels pixels, before that
// much is read.
Bytes ReadInput(const std::string& name, std::int64_t maxPixels);

}  // namespace marovia
