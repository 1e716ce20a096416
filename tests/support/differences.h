#pragma once

#include <string>

#include "marovia/codec.h"

namespace marovia::test {

// What the library does otherwise than the plain codec, or nothing.
std::string EncodingDifference(const Image& image, const CompressOptions& options);

// So many bits for each row of the image are decoded, or all.
std::string DecodingDifference(ByteView file, FileKind kind, std::optional<int> bitsOfARow = {});

}  // namespace marovia::test
