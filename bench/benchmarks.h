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

// The same of a few codecs for a large image, made of a tile by which they are chosen and tried.
void RegisterLarge(const Source& tile, const Source& large);

// "stage/...": the parts of a compression and a decompression of the source.
void RegisterStages(const Source& source);

}  // namespace marovia::bench
