#include <limits>

#include "marovia/error.h"

#include "pictures/formats.h"
#include "pictures/tiff_memory.h"

namespace marovia {
namespace {

// Larger ones get the places of more than 4 GB, which fewer programs read.
constexpr std::size_t kMostOrdinaryPixels = std::size_t{3} << 30;
constexpr std::uint32_t kStripBytes = 1U << 16;

void SetFields(TIFF* tiff, const Image& image) {
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(image.Cols()));
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(image.Rows()));
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
  TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
  TIFFSetField(
      tiff, TIFFTAG_ROWSPERSTRIP,
      TIFFDefaultStripSize(tiff, kStripBytes / static_cast<std::uint32_t>(image.Cols()) + 1));
}

}  // namespace

Bytes WriteTiff(const Image& image) {
  TiffMemory memory(image.Size() > kMostOrdinaryPixels ? "w8" : "w",
                    std::numeric_limits<std::int64_t>::max());
  SetFields(memory.Get(), image);
  Bytes row;  // the predictor works in place
  for (int r = 0; r < image.Rows(); ++r) {
    row.assign(image.Row(r).begin(), image.Row(r).end());
    if (TIFFWriteScanline(memory.Get(), row.data(), static_cast<std::uint32_t>(r), 0) < 0)
      memory.FailAsTold();
  }
  return memory.Close();
}

}  // namespace marovia
