// The Netpbm formats of grey and colour images: PGM and PPM, plain and binary.
#pragma once

#include "marovia/image.h"

namespace marovia {

//   P5 or P2 (grey), P6 or P3 (colour); P2 and P3 are plain text
//   columns rows maximum      decimal, set apart by white space and comments
//   samples                   in P5 and P6 after one white space: a byte each, two (the high one
//                             first) where the maximum is above 255; else decimal numbers
//
// The first image of a file that holds several. A sample above the maximum is kMalformed, another
// Netpbm format kUnsupported.
LoadedImage ReadPnm(ByteView file, std::int64_t maxPixels);

}  // namespace marovia
