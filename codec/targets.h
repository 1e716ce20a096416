// Searches: runs repeated until the file is as short, or the picture as good, as asked for. The
// tries are quiet; what the one that is kept had to report comes afterwards.
#pragma once

#include "marovia/codec.h"

namespace marovia {

// At most options.bytes bytes. Error kInvalidArgument where no file is so short.
CompressResult CompressToBytes(const Image& image, const CompressOptions& options);

// In about the fewest bytes that decode to options.psnr decibels. Error kInvalidArgument where no
// file does.
CompressResult CompressToPsnr(const Image& image, const CompressOptions& options);

// With both integer wavelets at once, of which the shorter file is kept.
CompressResult CompressToTheShorter(const Image& image, const CompressOptions& options);

}  // namespace marovia
