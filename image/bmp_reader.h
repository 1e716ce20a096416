// The reader of Windows BMP files.
#pragma once

#include "marovia/image.h"

namespace marovia {

// Every header from 12 to 124 bytes, 1, 4, 8, 16, 24 and 32 bits a pixel, masks, run-length codes
// and both row orders; transparency is not looked at. Components of fewer than 8 bits are spread
// over 0 to 255. A pixel whose index its palette does not have is kMalformed.
LoadedImage ReadBmp(ByteView file, std::int64_t maxPixels);

}  // namespace marovia
