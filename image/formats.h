// What a file holds by its first bytes, images that are read here and what is often taken for one;
// and the Netpbm formats, plain and binary.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "marovia/image.h"

namespace marovia {

struct Signature {
  std::string_view name;   // with its article: "a PNG image"; empty where the file is of none
  std::size_t length = 0;  // bytes that tell
  bool isRead = false;     // an image of a family that is read here

  [[nodiscard]] bool IsKnown() const { return length > 0; }
};

// Names of signatures for whom is able to read what this folder does not.
inline constexpr std::string_view kPng = "a PNG image";
inline constexpr std::string_view kJpeg = "a JPEG image";
inline constexpr std::string_view kTiff = "a TIFF image";

// Of images, read here or not, and of what is often taken for one.
Signature SignatureOf(ByteView file);

// Whether ReadImage takes the file, if only to say what is wrong with it.
bool IsReadHere(ByteView file);

// Error kMalformed or kUnsupported for a file of which that is all that is known.
// `whatIsRead` goes before "are read".
[[noreturn]] void RefuseFormat(ByteView file, const std::string& whatIsRead);

// The formats that ReadImage reads, in the words for RefuseFormat.
inline constexpr const char* kReadFormats = "PBM, PGM, PPM, PAM and BMP";

//   P5 or P2 (grey), P6 or P3 (colour), P4 or P1 (bits, 1 is black); 2, 3 and 1 are plain text
//   columns rows maximum      decimal, set apart by white space and comments; of bits no maximum
//   samples                   in P5 and P6 after one white space: a byte each, two (the high one
//                             first) where the maximum is above 255; in P4 eight to a byte, each
//                             row from a new byte on; in P1 the digits 0 and 1; else decimal
//                             numbers
//
// P7 has a header of its own (netpbm.h), then samples as in P6. The first image of a file that
// holds several. A sample above the maximum is kMalformed.
LoadedImage ReadPnm(ByteView file, std::int64_t maxPixels);

}  // namespace marovia
