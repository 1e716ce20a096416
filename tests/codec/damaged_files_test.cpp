// Files that are cut, and headers that ask for what cannot be.
#include <gtest/gtest.h>

#include "marovia/codec.h"

#include "tests/support/code_of.h"
#include "tests/support/forged_file.h"
#include "tests/support/plain_codec.h"
#include "tests/support/test_images.h"

namespace marovia {
namespace {

using enum FileKind;
using enum WaveletKind;
using test::CodeOf;

// Of a whole file and of one cut to half its length, only the latter is taken for a cut one.
TEST(CutFiles, AreToldFromWholeOnesAndRefusedWithinTheirHeader) {
  const Image image = test::NamedImage("rings", 45, 48);
  for (const FileKind kind : plain::AllKinds()) {
    // A region's compressor charges its header more than others.
    CompressOptions options{kind, kInteger53, 3};
    options.region = Region{2, 3, 20, 30};
    Bytes file;
    for (int bitsOfARow = 40; bitsOfARow < 56; ++bitsOfARow) {
      options.rate = bitsOfARow / 48.0;
      file = Compress(image, options).file;
      const DecompressResult whole = Decompress(file, kind);
      EXPECT_FALSE(whole.truncated) << Extension(kind) << ", " << bitsOfARow;
      EXPECT_EQ(whole.info.fillsBudget, kind != kAwg) << Extension(kind) << ", " << bitsOfARow;
    }
    const DecompressResult half = Decompress(ByteView(file).first(file.size() / 2), kind);
    EXPECT_TRUE(half.truncated) << Extension(kind);
    EXPECT_FALSE(half.info.fillsBudget);
    const std::size_t header = kind == kAwg ? 10 : 14;
    EXPECT_TRUE(Decompress(ByteView(file).first(header), kind).truncated);
    const ByteView less = ByteView(file).first(header - 1);
    EXPECT_EQ(CodeOf([&] { Decompress(less, kind); }), Errc::kMalformed);
  }
}

// Every one of the bytes behind the stream once cost a decoding.
TEST(CutFiles, LoseAMegabyteOfTrailingGarbageAtOnce) {
  const Image image = test::NamedImage("blobs", 64, 64);
  for (const FileKind kind : {kAwb, kAwg}) {
    Bytes file = Compress(image, {kind, kInteger53, 3, 20}).file;
    const std::size_t size = file.size();
    file.resize(size + (1 << 20), 0x55);
    const auto most = static_cast<std::int64_t>(file.size()) - 1;
    // What became lossy has a budget of 4 bytes in its header.
    EXPECT_LE(Truncate(file, kind, {.rate = {}, .bytes = most}).file.size(), size + 4);
  }
}

TEST(Headers, ThatAskForTooMuchAreRefusedBeforeAnythingIsAllocated) {
  const Bytes huge = test::ForgedHeader({.levels = 4, .rows = 32767, .cols = 32767});
  EXPECT_EQ(CodeOf([&] { Decompress(huge, kAwf); }), Errc::kLimit);
  const Bytes small = test::ForgedHeader({.rows = 100, .cols = 100});
  EXPECT_EQ(CodeOf([&] { Inspect(small, kAwb, 9999); }), Errc::kLimit);
  EXPECT_EQ(Inspect(small, kAwb, 10000).rows, 100);
}

TEST(Headers, ThatNoCompressorWritesAreRefused) {
  // Levels and wavelet, rows, columns; at last an exponent.
  const test::Forgery cases[] = {
      {5, 2, 512, 512},     {8, 1, 512, 512}, {2, 1, 8, 512}, {1, 1, 512, 5}, {0, 1, 2, 512},
      {25, 1, 4, 4},        {1, 0},           {1, 4},         {1, 1, 0},      {1, 1, 32, -1},
      {1, 1, 32, 32, 0, 32}};
  for (const test::Forgery& forgery : cases) {
    const Bytes file = test::ForgedHeader(forgery);
    EXPECT_EQ(CodeOf([&] { Inspect(file, kAwf); }), Errc::kMalformed) << &forgery - cases;
  }
  for (const int wavelet : {1, 2, 3}) {
    const Bytes file = test::ForgedHeader({.wavelet = wavelet, .mean = 3e38F});
    EXPECT_EQ(CodeOf([&] { Decompress(file, kAwf); }), Errc::kOverflow);
  }
}

}  // namespace
}  // namespace marovia
