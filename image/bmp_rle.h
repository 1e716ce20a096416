// The run-length codes of BMP.
#pragma once

#include "image/bmp_header.h"

namespace marovia {

// Palette indices of 8 or 4 bits in code pairs of two bytes:
//
//   n i         n pixels of index i; in 4 bits of the high and the low half of i in turn
//   0 0         the next row begins
//   0 1         the image ends
//   0 2 x y     x columns to the right and y rows on
//   0 n ...     n (3 or more) indices as they are, padded to an even number of bytes
//
// Pixels that the code steps over have index 0; those past the end of a row are dropped. Error
// kMalformed where it otherwise leaves the image, or ends before the last row does.
Image DecodeBmpRuns(const BmpHeader& header, ByteView code);

}  // namespace marovia
