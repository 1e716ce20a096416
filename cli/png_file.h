// Pictures as PNG, for desktops, which want that.
#pragma once

#include "marovia/image.h"

namespace marovia::cli {

// 8-bit grey, not interlaced.
Bytes WritePng(const Image& image);

}  // namespace marovia::cli
