// Images, and the readers and writers of image files on bytes in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "marovia/export.h"
#include "marovia/grid.h"

namespace marovia {

// Grey values 0 (black) to 255 (white), row 0 at the top.
using Image = Grid<std::uint8_t>;

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

// The pixels that a reader accepts unless told otherwise: 2^26, an image of 8192 x 8192.
inline constexpr std::int64_t kDefaultMaxPixels = std::int64_t{1} << 26;

enum class ImageFormat {
  kPgm,  // or another of the Netpbm formats
  kBmp,
};

struct LoadedImage {
  Image image;
  ImageFormat format = ImageFormat::kPgm;
  // What of the file the image does not hold ("colour turned to grey", "transparency dropped",
  // "values scaled from 1023 to 255"), with commas between; empty where it holds all.
  std::string alteration;
};

// Reads a PGM (P5 and P2, comments, any white space, maximum values up to 65535; of several images
// the first), one of its siblings PPM (P6 and P3), PBM (P4 and P1) and PAM (P7), or a BMP (1, 2, 4,
// 8, 16, 24 and 32 bits, run-length coded or not, both row orders, of Windows and of OS/2), told
// apart by their first bytes. Colour becomes grey
// with the weights of ITU-R BT.601; what is grey stays as it is. Throws Error: kMalformed also for
// a file cut short or a sample above its maximum, kUnsupported, or kLimit where the image has more
// than maxPixels pixels; that is checked before anything is allocated.
MAROVIA_API LoadedImage ReadImage(ByteView file, std::int64_t maxPixels = kDefaultMaxPixels);

// A binary PGM, width first; a bottom-up BMP of 8 bits with a grey palette (Error kLimit where it
// would exceed the 4 GB that its header can tell).
MAROVIA_API Bytes WritePgm(const Image& image);
MAROVIA_API Bytes WriteBmp(const Image& image);

}  // namespace marovia
