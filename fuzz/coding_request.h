// A small image and how to code it, from the bytes of a fuzzer.
#pragma once

#include "marovia/codec.h"

namespace marovia::fuzz {

struct CodingRequest {
  Image image;
  CompressOptions options;
};

// One byte each but for the rate: kind; wavelet; levels, 0 for unset; flags; rate in thousandths
// of a bit (two bytes, the last few values for what is no rate); rows; columns; two corners of a
// region; its share in hundredths. The rest are samples, of which each fills a square of 1 to 4
// pixels a side, and which begin again where they end.
CodingRequest TakeRequest(ByteView input, int mostSide);

// The flags.
enum RequestFlag : unsigned {
  kPad = 1,
  kRegion = 2,
  kBytes = 4,      // a number of bytes in place of the rate
  kAnyRegion = 8,  // corners as they come, whether in the image or not
  kSquareShift = 4,
  kLossless = 64
};

}  // namespace marovia::fuzz
