#include <gtest/gtest.h>

#include "tests/support/golden_check.h"
#include "tests/support/literal_coder.h"

namespace marovia {
namespace {

const test::CodecUnderTest kOracle{
    literal::Compress,
    [](ByteView file, FileKind kind, double rate) {
      return literal::Decompress(file, kind, rate).image;
    },
};

TEST(Oracle, GivesTheRecordedFilesAndPictures) {
  test::CheckGoldenRows(MAROVIA_TEST_DATA, kOracle);
}

TEST(Oracle, GivesTheRecordedPicturesOfCutFiles) {
  test::CheckCutRows(MAROVIA_TEST_DATA, kOracle);
}

}  // namespace
}  // namespace marovia
