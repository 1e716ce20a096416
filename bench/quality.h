// What a file of some size holds: our coders next to the peers.
#pragma once

#include <vector>

#include "bench/source_image.h"
#include "bench/table_text.h"

namespace marovia::bench {

// Rows of image, size, coder, wavelet, bits per pixel asked for (of lossless files had), bytes and
// PSNR ("exact"). Our lossy files have at most the bytes that the peer's rate control ended at.
std::vector<Row> QualityRows(const Source& source);

}  // namespace marovia::bench
