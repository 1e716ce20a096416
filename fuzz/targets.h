// What the fuzzers run: functions that take any bytes and must not mind.
//
// A target returns where all is well, and throws std::logic_error where the library breaks a
// promise of its headers. Any exception but marovia::Error that leaves the library goes through.
#pragma once

#include <span>
#include <string_view>

#include "marovia/image.h"

namespace marovia::fuzz {

using Target = void (*)(ByteView input);

// The first byte names the kind of the file, the second asks for all of it, a lower rate or a part;
// the rest is the file.
void Decode(ByteView input);
// The same two bytes, with which Inspect and Truncate are called.
void Cut(ByteView input);
// A PGM, PPM or BMP file, read as such and as the form reads it.
void ReadImages(ByteView input);
// A CodingRequest: coded and decoded again.
void RoundTrip(ByteView input);
// As Decode and RoundTrip, but against the plain codec of the tests.
void DecodePlainly(ByteView input);
void EncodePlainly(ByteView input);

struct NamedTarget {
  std::string_view name;
  Target run;
};

std::span<const NamedTarget> Targets();

// Throws std::logic_error where a promise does not hold.
void Promise(bool holds, const char* promise);

}  // namespace marovia::fuzz
