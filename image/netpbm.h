// What stands before the samples of a Netpbm image.
#pragma once

#include <cstdint>

#include "marovia/image.h"

#include "image/raster.h"

namespace marovia {

struct NetpbmHeader {
  Shape shape;
  int channels = 1;           // samples of a pixel
  bool colour = false;        // the first three are red, green and blue
  bool transparency = false;  // the last says how opaque the pixel is
  std::uint32_t maximum = 1;  // of a sample
  bool bits = false;          // black or white by definition, so that nothing is scaled

  [[nodiscard]] std::int64_t Samples() const { return shape.Pixels() * channels; }
};

// Error kMalformed unless it is from 1 to 65535.
std::uint32_t CheckedNetpbmMaximum(std::int64_t maximum);

struct PamStart {
  NetpbmHeader header;
  ByteView samples;
};

// The header of P7: lines of a word and its value, in any order, from the second of the file to
// "ENDHDR". WIDTH, HEIGHT, DEPTH and MAXVAL must be there; TUPLTYPE says what the samples are, and
// without it the depth does. Comments are lines that begin with '#'. Error kMalformed, and
// kUnsupported for samples of another meaning.
PamStart ReadPamStart(ByteView file, std::int64_t maxPixels);

}  // namespace marovia
