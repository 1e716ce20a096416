// Files that are cut, and headers that ask for what cannot be.
#include <gtest/gtest.h>
#include <string>

#include "marovia/codec.h"

#include "coding/file_header.h"
#include "tests/support/code_of.h"
#include "tests/support/literal_coder.h"
#include "tests/support/test_images.h"

namespace marovia {
namespace {

using enum FileKind;
using enum WaveletKind;
using test::CodeOf;

constexpr double kBeyondEveryFile = 100;

bool IsRaw(FileKind kind) {
  return kind == kAwb || kind == kAwd;
}

void CheckCut(ByteView cut, FileKind kind, bool whole) {
  const DecompressResult decoded = Decompress(cut, kind);
  const literal::Decoded expected = literal::Decompress(cut, kind, kBeyondEveryFile);
  EXPECT_TRUE(decoded.image == expected.image);
  if (IsRaw(kind)) {
    EXPECT_EQ(decoded.truncated, expected.missingBits);
  } else if (whole || !expected.missingBits) {
    EXPECT_FALSE(decoded.truncated);
  }
}

TEST(CutFiles, DecodeFromTheEndOfTheirHeaderOnAndTellWhetherBitsAreMissing) {
  const Image image = test::NamedImage("blobs", 24, 32);
  for (const FileKind kind : {kAwb, kAwa, kAwd, kAwf, kAwg}) {
    for (const WaveletKind wavelet : {kDaub97, kInteger53}) {
      if (kind == kAwg && wavelet == kDaub97) continue;
      const Bytes file = Compress(image, {kind, wavelet, 2, 1.3}).file;
      for (std::size_t length = 0; length <= file.size(); ++length) {
        SCOPED_TRACE(testing::Message()
                     << Extension(kind) << " cut to " << length << " of " << file.size());
        const ByteView cut = ByteView(file).first(length);
        if (length < HeaderSize(kind != kAwg)) {
          EXPECT_EQ(CodeOf([&] { Decompress(cut, kind); }), Errc::kMalformed);
        } else {
          CheckCut(cut, kind, length == file.size());
        }
        if (testing::Test::HasFailure()) return;
      }
    }
  }
}

// A file cut to half its length must not pass for a whole one.
TEST(CutFiles, OfEveryKindAreTruncatedAtHalfTheirLength) {
  const Image image = test::NamedImage("rings", 45, 48);
  for (const FileKind kind : {kAwb, kAwa, kAwd, kAwf, kAwg}) {
    const Bytes file = Compress(image, {kind, kInteger53, 3, 2}).file;
    const DecompressResult half = Decompress(ByteView(file).first(file.size() / 2), kind);
    EXPECT_TRUE(half.truncated) << Extension(kind);
    EXPECT_FALSE(half.info.fillsBudget);
    EXPECT_FALSE(Decompress(file, kind).truncated) << Extension(kind);
  }
}

Bytes HeaderOf(int levels, WaveletKind wavelet, int rows, int cols, float mean = 0) {
  return WriteHeader({.budget = 1000,
                      .levels = levels,
                      .wavelet = wavelet,
                      .sides = {rows, cols},
                      .mean = mean,
                      .exponent = 5});
}

TEST(Headers, ThatAskForTooMuchAreRefusedBeforeAnythingIsAllocated) {
  const Bytes huge = HeaderOf(4, kDaub97, 32767, 32767);
  EXPECT_EQ(CodeOf([&] { Decompress(huge, kAwf); }), Errc::kLimit);
  EXPECT_EQ(CodeOf([&] { Inspect(huge, kAwb); }), Errc::kLimit);
  const Bytes small = HeaderOf(1, kDaub97, 100, 100);
  EXPECT_EQ(CodeOf([&] { Inspect(small, kAwb, 9999); }), Errc::kLimit);
  EXPECT_EQ(Inspect(small, kAwb, 10000).rows, 100);
}

TEST(Headers, WithMoreLevelsThanTheirSidesBearAreRefused) {
  const struct {
    int levels;
    WaveletKind wavelet;
    int rows, cols;
  } cases[] = {{5, kInteger53, 512, 512}, {8, kDaub97, 512, 512}, {2, kDaub97, 8, 512},
               {1, kDaub97, 512, 5},      {0, kDaub97, 2, 512},   {25, kInteger22, 4, 4}};
  for (const auto& c : cases) {
    const Bytes file = HeaderOf(c.levels, c.wavelet, c.rows, c.cols);
    EXPECT_EQ(CodeOf([&] { Inspect(file, kAwf); }), Errc::kMalformed) << c.rows << " x " << c.cols;
  }
}

// Every one of the bytes behind the stream once cost a decoding.
TEST(CutFiles, LoseAMegabyteOfTrailingGarbageAtOnce) {
  constexpr std::size_t kBudgetBytes = 4;
  const Image image = test::NamedImage("blobs", 64, 64);
  for (const FileKind kind : {kAwb, kAwg}) {
    Bytes file = Compress(image, {kind, kInteger53, 3, 20}).file;
    const std::size_t size = file.size();
    file.resize(size + (1 << 20), 0x55);
    const auto most = static_cast<std::int64_t>(file.size()) - 1;
    // What became lossy has a budget in its header.
    EXPECT_LE(Truncate(file, kind, {.rate = {}, .bytes = most}).file.size(), size + kBudgetBytes);
  }
}

TEST(Headers, WithAHugeMeanFailInsteadOfMakingAPicture) {
  for (const WaveletKind wavelet : {kDaub97, kInteger53, kInteger22}) {
    const Bytes file = HeaderOf(2, wavelet, 32, 32, 3e38F);
    EXPECT_EQ(CodeOf([&] { Decompress(file, kAwf); }), Errc::kOverflow);
  }
}

}  // namespace
}  // namespace marovia
