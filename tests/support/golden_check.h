// Holds a codec against the recorded results.
#pragma once

#include <functional>
#include <string>

#include "tests/support/golden_table.h"

namespace marovia::test {

struct CodecUnderTest {
  std::function<literal::Encoded(const Image&, const literal::Settings&)> compress;
  std::function<Image(ByteView file, FileKind kind, double rate)> decompress;
};

// Both read their table from the folder of the test data, and fail the running test row by row.
void CheckGoldenRows(const std::string& dataFolder, const CodecUnderTest& codec);
void CheckCutRows(const std::string& dataFolder, const CodecUnderTest& codec);

}  // namespace marovia::test
