// How much of a file is good enough.
#pragma once

#include <cstdint>
#include <optional>

#include "marovia/codec.h"

namespace marovia {

// The PSNR of what a file decodes to against its image; infinite where they are the same.
double PsnrOfFile(const Image& image, ByteView file, FileKind kind);

// The fewest bytes that a file of at least `psnr` decibels needs, found by decoding starts of one
// long file of the image; none where all of it is not enough. Good to a few bytes, since a file
// made for so many ends a little differently. Starts of `atLeast` bytes and more are tried.
std::optional<std::int64_t> BytesForPsnr(const Image& image, ByteView file, FileKind kind,
                                         double psnr, std::int64_t atLeast);

}  // namespace marovia
