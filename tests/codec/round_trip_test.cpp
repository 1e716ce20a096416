// Images of every size come back, and their files tell the size.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <iterator>
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

constexpr FileKind kKinds[] = {FileKind::kAwb, FileKind::kAwa, FileKind::kAwd, FileKind::kAwf,
                               FileKind::kAwg};

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

TEST(Padding, IsMarkedInTheHeaderWhereSidesDoNotFit) {
  const struct {
    Sides sides;
    int levels;
    Sides coded;
  } cases[] = {{{20, 24}, 2, {20, 24}}, {{21, 24}, 2, {24, 24}}, {{1, 1}, 1, {4, 4}},
               {{2, 9}, 1, {4, 9}},     {{30, 50}, 3, {32, 56}}, {{3, 3}, 1, {3, 3}}};
  for (const auto& c : cases) {
    const Image image = test::NamedImage("blobs", c.sides.rows, c.sides.cols);
    for (const FileKind kind : kKinds) {
      const Bytes file = Compress(image, {kind, kInteger53, c.levels, 40}).file;
      const FileInfo info = Inspect(file, kind);
      EXPECT_TRUE((Sides{info.rows, info.cols}) == c.sides);
      EXPECT_TRUE((Sides{info.codedRows, info.codedCols}) == c.coded);
      EXPECT_EQ(file[kind == FileKind::kAwg ? 0 : 4] >= 128, c.coded != c.sides);
      EXPECT_TRUE(Decompress(file, kind).image == image) << Extension(kind);
    }
  }
}

TEST(Padding, TheSizeOutlivesEveryCutAndNoTailChangesThePicture) {
  for (const Sides sides : {Sides{77, 101}, Sides{300, 517}}) {
    const Image image = test::NamedImage("blobs", sides.rows, sides.cols);
    for (const FileKind kind : kKinds) {
      SCOPED_TRACE(testing::Message() << Extension(kind) << " of " << sides.cols);
      Bytes file = Compress(image, {.kind = kind, .rate = 0.3}).file;
      const std::size_t step = sides.rows > 100 ? file.size() / 5 : 1 + file.size() / 300;
      for (std::size_t length = kMostHeaderBytes; length < file.size(); length += step)
        ASSERT_TRUE(Decompress(ByteView(file).first(length), kind).image.SameShape(image));
      const Image whole = Decompress(file, kind).image;
      for (std::size_t tail = 1; tail <= 100; ++tail) {
        file.push_back(static_cast<std::uint8_t>(tail * tail * 31));
        if (step > 100 && tail % 20 != 0) continue;
        ASSERT_TRUE(Decompress(file, kind).image == whole) << tail;
      }
    }
  }
}

TEST(Wavelet, IsTheBetterOneOfTheKindUnlessTold) {
  const Image image = test::NamedImage("rings", 64, 64);
  EXPECT_EQ(Inspect(Compress(image).file, FileKind::kAwf).wavelet, kDaub97);
  EXPECT_EQ(Compress(image, {.kind = FileKind::kAwg}).wavelet, kInteger22);
  CompressOptions best{.kind = FileKind::kAwg, .bestWavelet = true};
  for (const std::string_view name : {"rings", "checker", "blobs"}) {
    const Image each = test::NamedImage(name, 64, 64);
    const Bytes five = Compress(each, {FileKind::kAwg, kInteger53}).file;
    const Bytes two = Compress(each, {FileKind::kAwg, kInteger22}).file;
    int reports = 0;
    best.onPass = [&](const PassReport&) { ++reports; };
    const CompressResult shorter = Compress(each, best);
    EXPECT_EQ(shorter.file, five.size() < two.size() ? five : two) << name;
    EXPECT_EQ(std::ssize(shorter.passes), reports);
  }
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
      {{FileKind::kAwf, kDaub97, 1, 1, -3}, Errc::kInvalidArgument},
      {{FileKind::kAwf, kDaub97, 1, 1, INT64_MIN}, Errc::kInvalidArgument},
      {{.kind = FileKind::kAwf, .bestWavelet = true}, Errc::kInvalidArgument},
      {{.kind = FileKind::kAwg, .wavelet = kInteger53, .bestWavelet = true},
       Errc::kInvalidArgument},
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
