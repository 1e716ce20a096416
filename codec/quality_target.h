// How much of a file is good enough.
#pragma once

#include <cstdint>
#include <optional>

#include "marovia/codec.h"

namespace marovia {

// The PSNR of what a file decodes to against its image; infinite where they are the same.
double PsnrOfFile(const Image& image, ByteView file, FileKind kind);

// The least budget, in bits, at which a long file of the image decodes to `psnr` decibels or more;
// none where all of it is not enough. Every budget is tried on that one file.
std::optional<std::int32_t> BudgetForPsnr(const Image& image, ByteView file, FileKind kind,
                                          double psnr);

}  // namespace marovia
