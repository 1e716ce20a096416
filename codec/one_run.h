// A whole run of one coder, as the interface of the library asks for it: its choices made, its
// steps in order, its reports collected.
#pragma once

#include "marovia/codec.h"

namespace marovia {

// Whether the options ask for every pixel, by themselves or by the kind.
bool IsLossless(const CompressOptions& options);

// The wavelet that the options name, or leave to the kind.
WaveletKind WaveletOf(const CompressOptions& options);

// Codes the image at a budget of bits, whatever the options say of rate, bytes and PSNR; a lossless
// coder has no use for it. Error kInvalidArgument where the sides bear no levels.
CompressResult CompressOnce(const Image& image, const CompressOptions& options,
                            std::int32_t budget);

// Decodes what the options ask for. Errors as Inspect.
DecompressResult DecompressOnce(ByteView file, FileKind kind, const DecompressOptions& options);

}  // namespace marovia
