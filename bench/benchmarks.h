// What is timed. Benchmarks are registered under names with slashes; their times are the
// processor's over all threads, so that other programs' work disturbs them little.
#pragma once

#include <string>

#include "bench/source_image.h"

namespace marovia::bench {

// "compress/CODEC/IMAGE" and "decompress/CODEC/IMAGE" for every contestant, and
// "tenth/KIND/IMAGE" and "none/KIND/IMAGE": a tenth of the bits of a file of 1 bit per pixel, and
// next to none of them. The source must outlive the run.
void RegisterCodecs(const Source& source);

// Codecs and peers at half a bit per pixel and lossless, for images as large as one likes; and
// "wall/KIND/THREADS/IMAGE", the time that passes during a compression, and
// "reduce3/awf/0.5/IMAGE", a decoding to an eighth of the sides.
void RegisterLarge(const Source& source);

// "stage/...": the parts of a compression and a decompression of the source.
void RegisterStages(const Source& source);

}  // namespace marovia::bench
