// The context-coded kind behind the functions that all kinds have in common.
#pragma once

#include "marovia/codec.h"

namespace marovia {

// With options that Compress has checked, and the wavelet that they come to.
CompressResult CompressContext(const Image& image, const CompressOptions& options,
                               WaveletKind wavelet);
DecompressResult DecompressContext(ByteView file, const DecompressOptions& options);

FileInfo InspectContext(ByteView start, std::int64_t fileBytes, std::int64_t maxPixels);
std::int64_t UsefulContextBytes(const FileInfo& info);

// How many bytes of a file are its cut.
std::int64_t ContextCut(ByteView file, const TruncateOptions& options);

}  // namespace marovia
