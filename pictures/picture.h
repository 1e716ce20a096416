// Image files of every format that this build knows, on bytes: those of ReadImage, and PNG, TIFF
// and JPEG where their libraries are there. For all front ends.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "marovia/image.h"

namespace marovia {

struct PictureOptions {
  std::int64_t maxPixels = kDefaultMaxPixels;
  int page = 1;  // of a file that holds several, from 1
};

struct Picture {
  Image image;
  // As of a LoadedImage: what of the file the image does not hold, empty where it holds all.
  std::string alteration;
  // What else there is to say, a line each ("the first of 3 pages"), also what a library minded.
  std::vector<std::string> notices;
};

// Told apart by the first bytes. Colour becomes grey as in ReadImage, and samples of more than 8
// bits are scaled; a picture whose file says that it lies on its side is turned. Throws Error as
// ReadImage does, and kInvalidArgument for a page that is not there. Nothing is allocated for an
// image of more than maxPixels pixels, and a library gets no more memory than such an image needs.
Picture ReadPicture(ByteView file, const PictureOptions& options = {});

// Whether a file that begins so is one that ReadPicture reads, as far as that tells.
bool IsPicture(ByteView start);

// "PGM, BMP and PNG": the formats that this build reads, with `beforeLast` before the last.
std::string ReadFormatNames(std::string_view beforeLast);
// Their usual extensions, in lower case without a point.
std::vector<std::string_view> ReadExtensions();

// A format that images are written in.
struct PictureWriter {
  std::string_view extension;       // in lower case without a point; it names the format, too
  std::string_view otherExtension;  // that some give it, or empty
  Bytes (*write)(const Image& image);
};

// PGM first, then BMP, then what this build has of PNG and TIFF.
std::span<const PictureWriter> PictureWriters();

}  // namespace marovia
