// The codecs of others, each there if the program was built with its library.
#pragma once

#include <cstdint>

#include "marovia/image.h"

namespace marovia::bench {

// JPEG 2000 as a bare codestream: the 9/7 wavelet in at most about `bytes`, or reversible 5/3.
Bytes CompressOpenJpeg(const Image& image, std::int64_t bytes);
Bytes CompressOpenJpegLossless(const Image& image);
Image DecompressOpenJpeg(ByteView file);

// JPEG-LS, lossless.
Bytes CompressCharls(const Image& image);
Image DecompressCharls(ByteView file);

// JPEG XL, lossless, with an effort from 1 to 9.
Bytes CompressJpegXl(const Image& image, int effort);
Image DecompressJpegXl(ByteView file);

// Baseline JPEG with optimised tables.
Bytes CompressJpeg(const Image& image, int quality);
Image DecompressJpeg(ByteView file);

}  // namespace marovia::bench
