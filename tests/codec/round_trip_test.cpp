// Images of every size come back, and their files tell the size.
#include "tests/support/plain_codec.h"

namespace marovia {
namespace {

using enum WaveletKind;
using test::CodeOf;

void ExpectExact(const Image& image, const CompressOptions& options) {
  const DecompressResult back = Decompress(Compress(image, options).file, options.kind);
  EXPECT_TRUE(back.image == image && !back.truncated)
      << image.Rows() << " x " << image.Cols() << ", " << Extension(options.kind) << ", wavelet "
      << static_cast<int>(*options.wavelet) << ", " << *options.levels;
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
    for (const FileKind kind : plain::Kinds()) {
      const CompressOptions options{kind, kInteger53, c.levels, 40};
      ExpectExact(image, options);
      const Bytes file = Compress(image, options).file;
      const FileInfo info = Inspect(file, kind);
      const bool padded = c.codedRows != c.rows || c.codedCols != c.cols;
      EXPECT_EQ(file[kind == FileKind::kAwg ? 0 : 4] >= 128, padded);
      EXPECT_EQ(info.rows, c.rows) << Extension(kind);
      EXPECT_EQ(info.cols, c.cols) << Extension(kind);
      EXPECT_EQ(info.codedRows, c.codedRows) << Extension(kind);
      EXPECT_EQ(info.codedCols, c.codedCols) << Extension(kind);
    }
  }
}

TEST(Files, KeepTheSizeWhenCutAndThePictureWithATail) {
  const Image image = test::NamedImage("blobs", 77, 101);
  for (const FileKind kind : plain::Kinds()) {
    Bytes file = Compress(image, {.kind = kind, .rate = 0.3}).file;
    for (std::size_t length = 14; length < file.size(); length += 1 + file.size() / 300) {
      ASSERT_TRUE(Decompress(ByteView(file).first(length), kind).image.SameShape(image)) << length;
    }
    const Image whole = Decompress(file, kind).image;
    for (int tail = 1; tail <= 100; ++tail) {
      file.push_back(static_cast<std::uint8_t>(tail * tail * 31));
      ASSERT_EQ(Decompress(file, kind).image, whole) << Extension(kind) << ", " << tail;
    }
  }
}

TEST(Wavelet, IsTheBetterOneOfTheKindUnlessTold) {
  EXPECT_EQ(Compress(Image(8, 8)).wavelet, kDaub97);
  EXPECT_EQ(Compress(Image(8, 8), {.kind = FileKind::kAwg}).wavelet, kInteger22);
  for (const std::string_view name : {"rings", "checker", "blobs"}) {
    const Image image = test::NamedImage(name, 64, 64);
    const Bytes five = Compress(image, {FileKind::kAwg, kInteger53}).file;
    const Bytes two = Compress(image, {FileKind::kAwg, kInteger22}).file;
    std::size_t reports = 0;
    CompressOptions best{.kind = FileKind::kAwg, .bestWavelet = true};
    best.onPass = [&](const PassReport&) { ++reports; };
    const CompressResult shorter = Compress(image, best);
    EXPECT_EQ(shorter.file, five.size() < two.size() ? five : two) << name;
    EXPECT_EQ(shorter.passes.size(), reports);
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
               {{kAwf, kDaub97, 1, 1, INT64_MIN}, Errc::kInvalidArgument},
               {{.kind = kAwf, .bestWavelet = true}, Errc::kInvalidArgument},
               {{.kind = kAwg, .wavelet = kInteger53, .bestWavelet = true}, Errc::kInvalidArgument},
               {{kAwf, kDaub97, 1, 1, {}, Region{0, 0, 20, 0}}, Errc::kInvalidArgument},
               {{kAwf, kDaub97, 1, 1, {}, Region{5, 0, 4, 0}}, Errc::kInvalidArgument}};
  for (const auto& c : cases)
    EXPECT_EQ(CodeOf([&] { Compress(Image(20, 30), c.options); }), c.code);
  EXPECT_EQ(CodeOf([] { Compress(Image(), {}); }), Errc::kInvalidArgument);
  EXPECT_EQ(CodeOf([] { Compress(Image(32768, 6), {kAwf}); }), Errc::kLimit);
  // This side holds, but not when it is padded.
  EXPECT_EQ(CodeOf([] { Compress(Image(32767, 6), {kAwf, kDaub97, 1}); }), Errc::kLimit);
  const CompressOptions bare{.kind = kAwf, .pad = false};
  EXPECT_EQ(CodeOf([&] { Compress(Image(2, 9), bare); }), Errc::kInvalidArgument);
}

}  // namespace
}  // namespace marovia
