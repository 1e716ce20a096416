// A small image and how to code it, from the bytes of a fuzzer.
#pragma once

#include "marovia/codec.h"

namespace marovia::fuzz {

struct CodingRequest {
  Image image;
  CompressOptions options;
};

// One byte each but for the rate: kind; wavelet; levels, 0 for unset; flags (1 to pad, 2 for a
// region, 4 for a number of bytes in place of the rate, 8 for corners that need not lie in the
// image, 16 for lossless); rate in thousandths of a bit (two bytes, the last few values for what is
// no rate); rows; columns; two corners of the region; its share in hundredths. The rest are
// samples, which begin again where they end.
CodingRequest TakeRequest(ByteView input, int mostSide);

}  // namespace marovia::fuzz
