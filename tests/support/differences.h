// Holds the library against the plain codec.
#pragma once

#include <string>

#include "tests/support/literal_coder.h"

namespace marovia::test {

// What differs when both code an image, in their files or their reports, or decode a file at a
// rate; empty where nothing does, as where both fail.
std::string EncodingDifference(const Image& image, const literal::Settings& settings);
std::string DecodingDifference(ByteView file, FileKind kind, double rate);

}  // namespace marovia::test
