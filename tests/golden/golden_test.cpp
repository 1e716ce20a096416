#include <gtest/gtest.h>
#include <utility>

#include "marovia/codec.h"

#include "tests/support/golden_check.h"
#include "tests/support/library_options.h"

namespace marovia {
namespace {

literal::Encoded CompressUnpadded(const Image& image, const literal::Settings& settings) {
  CompressResult result = Compress(image, test::UnpaddedOptions(settings, image));
  return {std::move(result.file), std::move(result.passes), result.levels, result.mean,
          result.exponent};
}

const test::CodecUnderTest kLibrary{
    CompressUnpadded,
    [](ByteView file, FileKind kind, double rate) {
      return Decompress(file, kind, test::OptionsOfRowRate(rate, file, kind)).image;
    },
};

TEST(Golden, TheLibraryGivesTheRecordedFilesAndPictures) {
  test::CheckGoldenRows(MAROVIA_TEST_DATA, kLibrary);
}

TEST(Golden, TheLibraryGivesTheRecordedPicturesOfCutFiles) {
  test::CheckCutRows(MAROVIA_TEST_DATA, kLibrary);
}

}  // namespace
}  // namespace marovia
