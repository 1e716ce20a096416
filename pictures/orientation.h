// How a picture lies in its file, and turning it upright.
#pragma once

#include "marovia/image.h"

namespace marovia {

// The number that the data of a camera (Exif: a TIFF header, then a list of fields) give, 1 to 8;
// 1, upright, where they give none or make no sense.
int OrientationIn(ByteView exif);

// The picture whose first row and column lie at these sides of the file's: 1 top left, 2 top right,
// 3 bottom right, 4 bottom left; with rows as columns 5 left top, 6 right top, 7 right bottom, 8
// left bottom. Another number is taken for 1.
Image Upright(Image image, int orientation);

}  // namespace marovia
