// Context-coded files: each prefix of at least 16 bytes decodes to a full picture, and with an
// integer wavelet the complete file is lossless.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "context/context_header.h"

namespace marovia {

// The state of a run after all passes over one bit plane.
struct PlaneReport {
  int plane = 0;           // of the threshold 2^plane; the header's planes less one is the first
  std::int64_t found = 0;  // coefficients found so far
  std::int64_t bytes = 0;  // of the file, written or read so far
};

using PlaneListener = std::function<void(const PlaneReport&)>;

struct ContextOptions {
  WaveletKind wavelet = WaveletKind::kDaub97;
  // Held to what the sides bear. Unset: 6 with the 9/7 wavelet, 5 with the others.
  std::optional<int> levels = {};
  // The most bytes of the file, at least 16; 0 is the complete one, of which every shorter file
  // without a region is the beginning.
  std::int64_t bytes = 0;
  // The last `share` of the bytes is spent on the coefficients that this part of the image needs.
  // A complete file has everything, and takes no notice.
  std::optional<Region> region = {};
  float share = 0.9F;
  PlaneListener onPlane = {};
  // For the transform, at most; 0: as many as the machine has processors.
  int threads = 1;
};

// Throws Error: kInvalidArgument (an empty image, levels below 0, fewer bytes than a header, a
// share that is not between 0 and 1, a region outside the image), kLimit (a side above 65535, more
// than 2^26 coefficients).
Bytes EncodeContext(const Image& image, const ContextOptions& options = {});

struct ContextPicture {
  Image image;
  ContextHeader header;
  // Whether no decision is missing; what was cut from a complete file is then implied by the rest.
  bool complete = false;
  // Where decoding ended; the plane may be one that did not end.
  PlaneReport last;
};

struct ContextDecodeOptions {
  std::int64_t maxPixels = kDefaultMaxPixels;
  PlaneListener onPlane = {};
  int threads = 1;
  // Sides 2^reduce smaller, held to the levels.
  int reduce = 0;
};

// Throws Error as ReadContextHeader. Every stream behind a header is that of some picture.
ContextPicture DecodeContext(ByteView file, const ContextDecodeOptions& options = {});

}  // namespace marovia
