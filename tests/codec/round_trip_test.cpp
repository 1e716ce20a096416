// Images of every size come back, and their files tell the size.
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string_view>

#include "marovia/codec.h"

#include "codec/geometry.h"
#include "tests/support/code_of.h"
#include "tests/support/test_images.h"

namespace marovia {
namespace {

using enum WaveletKind;
using test::CodeOf;

TEST(Lossless, ImagesOfEverySizeComeBackFromEveryLevel) {
  std::mt19937 random(8);
  for (int side = 1; side <= 40; ++side) {
    for (const Sides sides : {Sides{side, 41 - side}, Sides{side, side}, Sides{side, 64}}) {
      const Image image = test::RandomImage(random, sides.rows, sides.cols);
      for (const WaveletKind wavelet : {kInteger53, kInteger22}) {
        for (int levels = 1; levels <= std::max(1, LevelLimitOf(sides, wavelet, true)); ++levels) {
          CompressOptions options{FileKind::kAwg, wavelet, levels};
          const Bytes file = Compress(image, options).file;
          const DecompressResult back = Decompress(file, FileKind::kAwg);
          ASSERT_TRUE(back.image == image) << sides.rows << " x " << sides.cols << ", wavelet "
                                           << static_cast<int>(wavelet) << ", " << levels;
          ASSERT_FALSE(back.truncated);
        }
      }
    }
  }
}

// A peak that is a power of two, edges of full height, a flat page: the first threshold and the end
// of the stream at their limits.
TEST(Lossless, ExtremeImagesComeBack) {
  for (const std::string_view name : {"checker", "halves", "black", "flat", "lcgnoise"}) {
    const Image image = test::NamedImage(name, 64, 48);
    for (const WaveletKind wavelet : {kInteger53, kInteger22}) {
      for (int levels = 1; levels <= 4; ++levels) {
        const Bytes file = Compress(image, {FileKind::kAwg, wavelet, levels}).file;
        EXPECT_TRUE(Decompress(file, FileKind::kAwg).image == image) << name << levels;
      }
    }
  }
}

TEST(Lossless, TakesMostOfTheBitsForARegionAndStaysExactInIt) {
  const Image image = test::NamedImage("blobs", 64, 64);
  CompressOptions options{FileKind::kAwg, kInteger53, 3};
  options.region = Region{10, 20, 30, 40};
  const Image back = Decompress(Compress(image, options).file, FileKind::kAwg).image;
  for (int r = 10; r <= 30; ++r) {
    for (int c = 20; c <= 40; ++c) ASSERT_EQ(back(r, c), image(r, c));
  }
}

TEST(SizeNote, IsThereWhereSidesWerePaddedAndRulesTheSize) {
  const struct {
    Sides sides;
    int levels;
    Sides coded;
  } cases[] = {{{20, 24}, 2, {20, 24}}, {{21, 24}, 2, {24, 24}}, {{1, 1}, 1, {4, 4}},
               {{2, 9}, 1, {4, 9}},     {{30, 50}, 3, {32, 56}}, {{3, 3}, 1, {3, 3}}};
  for (const auto& c : cases) {
    const Image image = test::NamedImage("blobs", c.sides.rows, c.sides.cols);
    for (const FileKind kind : {FileKind::kAwb, FileKind::kAwa, FileKind::kAwd, FileKind::kAwf,
                                FileKind::kAwg, FileKind::kAwc}) {
      Bytes file = Compress(image, {kind, kInteger53, c.levels, 40}).file;
      const FileInfo info = Inspect(file, kind);
      EXPECT_TRUE((Sides{info.rows, info.cols}) == c.sides);
      EXPECT_TRUE((Sides{info.codedRows, info.codedCols}) == c.coded);
      EXPECT_TRUE(Decompress(file, kind).image == image) << Extension(kind);
      if (c.coded == c.sides) continue;
      // Without its last byte the note is nothing but bits behind the stream.
      file.pop_back();
      const Image padded = Decompress(file, kind).image;
      EXPECT_TRUE((Sides{padded.Rows(), padded.Cols()}) == c.coded);
      EXPECT_TRUE(Cropped(padded, c.sides) == image) << Extension(kind);
    }
  }
}

TEST(SizeNote, IsReadOnlyWherePaddingMakesTheHeadersSizeOfIt) {
  const struct {
    Bytes note;
    bool read;
  } cases[] = {
      {{'M', 'V', 's', 'z', 21, 0, 24, 0}, true},  {{'M', 'V', 's', 'z', 20, 0, 24, 0}, false},
      {{'M', 'V', 's', 'z', 24, 0, 25, 0}, false}, {{'M', 'V', 's', 'Z', 21, 0, 24, 0}, false},
      {{'M', 'V', 's', 'z', 0, 0, 24, 0}, false},  {{'V', 's', 'z', 21, 0, 24, 0}, false},
      {{'M', 'V', 's', 'z', 21, 0, 24, 1}, false}, {{0, 'M', 'V', 's', 'z', 21, 0, 21, 0}, true}};
  for (const auto& c : cases) EXPECT_EQ(FindSizeNote(c.note, {24, 24}, 2).has_value(), c.read);
  Bytes file;
  AppendSizeNote(file, {300, 5});
  EXPECT_EQ(file, (Bytes{'M', 'V', 's', 'z', 44, 1, 5, 0}));
}

TEST(Levels, AreThoseThatHelpUnlessTold) {
  const struct {
    Sides sides;
    int daub, integer;
  } cases[] = {{{512, 512}, 6, 4}, {{400, 600}, 5, 4}, {{500, 500}, 6, 4}, {{100, 100}, 3, 3},
               {{37, 37}, 3, 3},   {{5, 5}, 0, 0},     {{1, 1000}, 0, 0},  {{6, 1000}, 1, 1}};
  for (const auto& c : cases) {
    EXPECT_EQ(DefaultLevels(c.sides, kDaub97), c.daub) << c.sides.rows << " x " << c.sides.cols;
    EXPECT_EQ(DefaultLevels(c.sides, kInteger53), c.integer) << c.sides.rows;
  }
  EXPECT_EQ(Compress(Image(64, 64), {FileKind::kAwf, kDaub97, 99}).levels, 4);
}

TEST(Compress, RefusesWhatMakesNoSense) {
  const Image image(20, 30);
  const struct {
    CompressOptions options;
    Errc code;
  } cases[] = {
      {{FileKind::kAwf, kDaub97, 0}, Errc::kInvalidArgument},
      {{FileKind::kAwf, kDaub97, 1, 0}, Errc::kInvalidArgument},
      {{FileKind::kAwf, kDaub97, 1, -1}, Errc::kInvalidArgument},
      {{FileKind::kAwf, kDaub97, 1, NAN}, Errc::kInvalidArgument},
      {{FileKind::kAwf, kDaub97, 1, INFINITY}, Errc::kInvalidArgument},
      {{FileKind::kAwf, kDaub97, 1, 1e8}, Errc::kOverflow},
      {{FileKind::kAwg, kDaub97, 1}, Errc::kInvalidArgument},
      {{FileKind::kAwf, kDaub97, 1, 1, 3}, Errc::kInvalidArgument},
      {{FileKind::kAwf, kDaub97, 1, 1, {}, Region{0, 0, 20, 0}}, Errc::kInvalidArgument},
      {{FileKind::kAwf, kDaub97, 1, 1, {}, Region{5, 0, 4, 0}}, Errc::kInvalidArgument},
  };
  for (const auto& c : cases) EXPECT_EQ(CodeOf([&] { Compress(image, c.options); }), c.code);
  EXPECT_EQ(CodeOf([] { Compress(Image(), {}); }), Errc::kInvalidArgument);
  EXPECT_EQ(CodeOf([] { Compress(Image(32768, 6), {}); }), Errc::kLimit);
  // This side holds, but not when it is padded.
  EXPECT_EQ(CodeOf([] { Compress(Image(32767, 6), {FileKind::kAwf, kDaub97, 1}); }), Errc::kLimit);
  CompressOptions bare;
  bare.pad = false;
  EXPECT_EQ(CodeOf([&] { Compress(Image(2, 9), bare); }), Errc::kInvalidArgument);
}

}  // namespace
}  // namespace marovia
