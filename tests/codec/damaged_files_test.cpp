// Files that are cut, and headers that ask for what cannot be.
#include "format/file_header.h"
#include "tests/support/plain_codec.h"
#include "tests/support/plain_symbols.h"

namespace marovia {
namespace {

using enum FileKind;
using enum WaveletKind;
using test::CodeOf;

// Of a whole file and of one cut to half its length, only the latter is taken for a cut one.
TEST(CutFiles, AreToldFromWholeOnesAndRefusedWithinTheirHeader) {
  const Image image = test::NamedImage("rings", 45, 48);
  for (const FileKind kind : plain::Kinds()) {
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

Bytes HeaderOf(int levels, WaveletKind wavelet, Sides sides, float mean = 0) {
  return WriteHeader({1000, levels, wavelet, sides, false, mean, 5});
}

TEST(Headers, ThatAskForTooMuchAreRefusedBeforeAnythingIsAllocated) {
  const Bytes huge = HeaderOf(4, kDaub97, {32767, 32767});
  EXPECT_EQ(CodeOf([&] { Decompress(huge, kAwf); }), Errc::kLimit);
  const Bytes small = HeaderOf(1, kDaub97, {100, 100});
  EXPECT_EQ(CodeOf([&] { Inspect(small, kAwb, 9999); }), Errc::kLimit);
  EXPECT_EQ(Inspect(small, kAwb, 10000).rows, 100);
}

// Below 1 from the first pass on, an integer wavelet's threshold never is the one that ends a run.
TEST(Headers, WithATinyThresholdMakeNoMoreThan32Passes) {
  Bytes file = WriteHeader({1 << 30, 1, kInteger53, {32, 32}, false, 0, 0});
  plain::Symbols nothingFound(plain::Coding::kRaw, {});
  for (int pass = 0; pass < 40; ++pass) nothingFound.Number(32 * 32 + 2);
  const Bytes stream = nothingFound.Finish();
  file.insert(file.end(), stream.begin(), stream.end());
  EXPECT_EQ(Decompress(file, kAwb).passes.size(), 33U);
}

TEST(Headers, WithMoreLevelsThanTheirSidesBearOrAHugeMeanAreRefused) {
  const std::tuple<int, WaveletKind, Sides> cases[] = {
      {5, kInteger53, {512, 512}}, {8, kDaub97, {512, 512}}, {2, kDaub97, {8, 512}},
      {1, kDaub97, {512, 5}},      {0, kDaub97, {2, 512}},   {25, kInteger22, {4, 4}}};
  for (const auto& [levels, wavelet, sides] : cases) {
    const Bytes file = HeaderOf(levels, wavelet, sides);
    EXPECT_EQ(CodeOf([&] { Inspect(file, kAwf); }), Errc::kMalformed) << levels;
  }
  for (const WaveletKind wavelet : {kDaub97, kInteger53, kInteger22}) {
    const Bytes file = HeaderOf(2, wavelet, {32, 32}, 3e38F);
    EXPECT_EQ(CodeOf([&] { Decompress(file, kAwf); }), Errc::kOverflow);
  }
}

}  // namespace
}  // namespace marovia
