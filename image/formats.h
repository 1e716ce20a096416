// What a file holds by its first bytes, images that are read here and what is often taken for one;
// and the Netpbm formats of grey and colour images: PGM and PPM, plain and binary.
#pragma once

#include <cstddef>
#include <string_view>

#include "marovia/image.h"

namespace marovia {

struct Signature {
  std::string_view name;   // with its article: "a PNG image"; empty where the file is of none
  std::size_t length = 0;  // bytes that tell
  bool isRead = false;     // an image of a family that is read here

  [[nodiscard]] bool IsKnown() const { return length > 0; }
};

// Of images, read here or not, and of what is often taken for one.
Signature SignatureOf(ByteView file);

//   P5 or P2 (grey), P6 or P3 (colour); P2 and P3 are plain text
//   columns rows maximum      decimal, set apart by white space and comments
//   samples                   in P5 and P6 after one white space: a byte each, two (the high one
//                             first) where the maximum is above 255; else decimal numbers
//
// The first image of a file that holds several. A sample above the maximum is kMalformed, another
// Netpbm format kUnsupported.
LoadedImage ReadPnm(ByteView file, std::int64_t maxPixels);

}  // namespace marovia
