#pragma once

#include <string>

#include "marovia/image.h"

namespace marovia::test {

// The SHA-256 of the bytes, as 64 hexadecimal digits in lower case.
std::string Sha256(ByteView bytes);

}  // namespace marovia::test
