// The PGM of the form: one fixed layout, in which the writer and the reader do not agree on the
// order of the two sizes.
#pragma once

#include "marovia/image.h"

namespace marovia {

// The layout, byte by byte; there are no comments and no other white space:
//
//   3 bytes             "P5" and any byte
//   at most 5 bytes     the columns, up to a blank; "1MB" stands for 1024
//   at most 5 bytes     the rows, up to a line feed
//   at most 5 bytes     the maximum, up to a line feed; its value is not used
//   rows * columns      the samples, row by row; what follows is not looked at
//
// A size is a leading number rounded to 16 bits ("12.5" is 12). A field of five bytes without its
// end mark leaves the mark to the next field, so a height of five digits shifts the samples.
// Error kMalformed without "P5", with a size of 0 or less or with too few samples, kOverflow where
// a size exceeds 16 bits, kLimit above maxPixels.
Image ReadFormPgm(ByteView file, std::int64_t maxPixels = kDefaultMaxPixels);

// The same layout with the rows first: read back, an image that is not square has its sizes
// exchanged. Other programs read square ones only.
Bytes WriteFormPgm(const Image& image);

}  // namespace marovia
