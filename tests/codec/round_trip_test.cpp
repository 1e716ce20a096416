// Images of every size come back, and their files tell the size.
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string_view>

#include "marovia/codec.h"

#include "tests/support/code_of.h"
#include "tests/support/plain_codec.h"
#include "tests/support/test_images.h"

namespace marovia {
namespace {

using enum WaveletKind;
using test::CodeOf;

void ExpectExact(const Image& image, const CompressOptions& options) {
  const DecompressResult back = Decompress(Compress(image, options).file, options.kind);
  EXPECT_TRUE(back.image == image && !back.truncated)
      << image.Rows() << " x " << image.Cols() << ", " << Extension(options.kind) << ", wavelet "
      << static_cast<int>(options.wavelet) << ", " << *options.levels;
}

// Peaks that are powers of two, edges of full height and flat pages have the first threshold and
// the end of the stream at their limits.
TEST(Lossless, ImagesOfEverySizeAndExtremeOnesComeBackFromEveryLevel) {
  std::mt19937 random(8);
  for (const WaveletKind wavelet : {kInteger53, kInteger22}) {
    for (int levels = 1; levels <= 4; ++levels) {
      const CompressOptions options{FileKind::kAwg, wavelet, levels};
      for (int side = 1; side <= 40; ++side) {
        ExpectExact(test::RandomImage(random, side, 41 - side), options);
        ExpectExact(test::RandomImage(random, side, side % 2 == 0 ? side : 64), options);
      }
      for (const std::string_view name : {"checker", "halves", "black", "flat", "lcgnoise"}) {
        ExpectExact(test::NamedImage(name, 64, 48), options);
      }
    }
  }
}

TEST(Files, TellTheSizeOfTheirImageAndHowItWasPadded) {
  const struct {
    int rows, cols, levels, codedRows, codedCols;
  } cases[] = {{20, 24, 2, 20, 24}, {21, 24, 2, 24, 24}, {1, 1, 1, 4, 4},
               {2, 9, 1, 4, 9},     {30, 50, 3, 32, 56}, {3, 3, 1, 3, 3}};
  for (const auto& c : cases) {
    const Image image = test::NamedImage("blobs", c.rows, c.cols);
    for (const FileKind kind : plain::AllKinds()) {
      const CompressOptions options{kind, kInteger53, c.levels, 40};
      ExpectExact(image, options);
      const FileInfo info = Inspect(Compress(image, options).file, kind);
      EXPECT_EQ(info.rows, c.rows) << Extension(kind);
      EXPECT_EQ(info.cols, c.cols) << Extension(kind);
      EXPECT_EQ(info.codedRows, c.codedRows) << Extension(kind);
      EXPECT_EQ(info.codedCols, c.codedCols) << Extension(kind);
    }
  }
}

TEST(Levels, AreThoseThatHelpUnlessTold) {
  const struct {
    int rows, cols, daub, integer;
  } cases[] = {{512, 512, 6, 4}, {400, 600, 5, 4}, {500, 500, 6, 4},
               {248, 248, 3, 3}, {100, 100, 3, 3}, {37, 37, 3, 3},
               {5, 5, 0, 0},     {1, 1000, 0, 0},  {6, 1000, 1, 1}};
  for (const auto& c : cases) {
    const Image image(c.rows, c.cols);
    EXPECT_EQ(Compress(image, {FileKind::kAwf, kDaub97}).levels, c.daub) << c.rows;
    EXPECT_EQ(Compress(image, {FileKind::kAwf, kInteger53}).levels, c.integer) << c.rows;
  }
  EXPECT_EQ(Compress(Image(64, 64), {FileKind::kAwf, kDaub97, 99}).levels, 4);
}

TEST(Compress, RefusesWhatMakesNoSense) {
  using enum FileKind;
  const struct {
    CompressOptions options;
    Errc code;
  } cases[] = {{{kAwf, kDaub97, 0}, Errc::kInvalidArgument},
               {{kAwf, kDaub97, 1, 0}, Errc::kInvalidArgument},
               {{kAwf, kDaub97, 1, NAN}, Errc::kInvalidArgument},
               {{kAwf, kDaub97, 1, 1e8}, Errc::kOverflow},
               {{kAwg, kDaub97, 1}, Errc::kInvalidArgument},
               {{kAwf, kDaub97, 1, 1, 3}, Errc::kInvalidArgument},
               {{kAwf, kDaub97, 1, 1, {}, Region{0, 0, 20, 0}}, Errc::kInvalidArgument},
               {{kAwf, kDaub97, 1, 1, {}, Region{5, 0, 4, 0}}, Errc::kInvalidArgument}};
  for (const auto& c : cases)
    EXPECT_EQ(CodeOf([&] { Compress(Image(20, 30), c.options); }), c.code);
  EXPECT_EQ(CodeOf([] { Compress(Image(), {}); }), Errc::kInvalidArgument);
  EXPECT_EQ(CodeOf([] { Compress(Image(32768, 6), {}); }), Errc::kLimit);
  // This side holds, but not when it is padded.
  EXPECT_EQ(CodeOf([] { Compress(Image(32767, 6), {kAwf, kDaub97, 1}); }), Errc::kLimit);
  CompressOptions bare;
  bare.pad = false;
  EXPECT_EQ(CodeOf([&] { Compress(Image(2, 9), bare); }), Errc::kInvalidArgument);
}

}  // namespace
}  // namespace marovia
