// What the form's procedures share besides its controls.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>

#include "marovia/codec.h"

#include "app/control_kinds.h"
#include "app/shared_value.h"

namespace marovia {

struct AppState {
  std::array<std::int16_t, 15> PowerOfTwo{};

  // What the two pictures show: 'E' nothing, 'I' an image, 'T' a transform (GraphBox only).
  char GraphBoxContent = 'E';
  char GraphBoxRecContent = 'E';

  marovia::WaveletKind WaveletKind = marovia::WaveletKind::kInteger53;

  // The rectangle of the region of interest in the units of GraphBox: where the drag began, and
  // where it is or ended; and whether a rectangle is in force (1) or not (0).
  Colour ROIColor;
  std::int16_t ROIRow1 = 0;
  std::int16_t ROICol1 = 0;
  std::int16_t ROIRow2 = 0;
  std::int16_t ROICol2 = 0;
  std::int16_t ROISelected = 0;

  // The loaded image, 0 x 0 before the first load.
  std::int16_t NumRows = 0;
  std::int16_t LastRow = 0;
  std::int16_t NumCols = 0;
  std::int16_t LastCol = 0;
  SharedValue<Image> SourceImage;

  // The transform of the last forward transform or compression, and the picture of the last
  // inverse transform, decompression or region; zeros of the image's shape after a load. A padded
  // transform and a decompressed file of another image have shapes of their own.
  SharedValue<Grid<float>> TransformArray;
  SharedValue<Image> ReconstructedImage;

  // Where the image came from, and the compressed file that was written or read last. File
  // questions propose names after theirs.
  std::filesystem::path sourceFile;
  std::filesystem::path packedFile;

  // The picture whose bit rate the reports of a decompression give.
  int decodedRows = 0;
  int decodedCols = 0;

  // Whether sides are padded to what the levels need, and the file tells the true size. Without it
  // such images are coded as they are and do not come back faithfully.
  bool padToFit = false;
  // Whether a budget is the rate times the pixels, rounded once. Without it, it is the bits of a
  // row, rounded, times the rows.
  bool exactRate = false;
};

}  // namespace marovia
