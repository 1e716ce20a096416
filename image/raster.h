// A raster of one byte a sample, row after row without gaps: the body of every binary PGM.
#pragma once

#include "marovia/image.h"

#include "image/shape.h"

namespace marovia {

// The image whose samples begin the bytes; what follows them is not looked at. Error kMalformed
// where there are too few.
Image RasterImage(ByteView bytes, Shape shape);

// "P5", the two sizes on a line in the order given, "255", and the samples.
Bytes PgmFile(int firstSize, int secondSize, const Image& image);

}  // namespace marovia
