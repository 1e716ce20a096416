// The context-coded kind through the functions that all kinds share.
#include "tests/support/testing.h"

namespace marovia {
namespace {

using enum FileKind;
using enum WaveletKind;

DecompressOptions AtRate(double rate) {
  DecompressOptions options;
  options.rate = rate;
  return options;
}

// Every length is a file of its own: what is written for it, cut to it and decoded at it.
TEST(ContextKind, OfEveryLengthIsTheStartOfTheWhole) {
  for (const auto& [name, wavelet] : {std::pair("blobs", kDaub97), {"rings", kInteger53}}) {
    const Image image = test::NamedImage(name, 21, 30);
    const Bytes whole = Compress(image, {.kind = kAwh, .wavelet = wavelet, .rate = 30}).file;
    EXPECT_EQ(test::CodeOf([&] { Decompress(ByteView(whole).first(15), kAwh); }), Errc::kMalformed);
    for (std::size_t length = kMostHeaderBytes; length <= whole.size(); ++length) {
      const Bytes start(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
      const auto bytes = static_cast<std::int64_t>(length);
      ASSERT_EQ(Compress(image, {.kind = kAwh, .wavelet = wavelet, .bytes = bytes}).file, start);
      ASSERT_EQ(Truncate(whole, kAwh, {.rate = {}, .bytes = bytes}).file, start);
      const DecompressResult back = Decompress(start, kAwh);
      ASSERT_FALSE(back.truncated || back.rateHeld);
      const double rate = 8.0 * static_cast<double>(length) / static_cast<double>(image.Size());
      ASSERT_TRUE(back.image == Decompress(whole, kAwh, AtRate(rate)).image);
    }
  }
}

TEST(ContextKind, TellsOfBitsThatWereAskedForAndAreCut) {
  const Image image = test::NamedImage("rings", 40, 48);
  const Bytes whole = Compress(image, {.kind = kAwh, .lossless = true}).file;
  const DecompressResult all = Decompress(whole, kAwh, AtRate(20));
  EXPECT_TRUE(all.rateHeld && !all.truncated && all.image == image);
  const auto half = ByteView(whole).first(whole.size() / 2);
  const DecompressResult less = Decompress(half, kAwh, AtRate(20));
  EXPECT_TRUE(less.rateHeld && less.truncated);
  EXPECT_FALSE(Decompress(half, kAwh, AtRate(0.5)).truncated);
}

TEST(ContextKind, KeepsEveryPixelOnlyWithoutATarget) {
  const Image image = test::NamedImage("blobs", 45, 70);
  CompressOptions options{.kind = kAwh, .bestWavelet = true, .lossless = true};
  std::size_t shortest = SIZE_MAX;
  for (const WaveletKind wavelet : {kInteger53, kInteger22}) {
    const Bytes file = Compress(image, {.kind = kAwh, .wavelet = wavelet, .lossless = true}).file;
    EXPECT_TRUE(Decompress(file, kAwh).image == image);
    shortest = std::min(shortest, file.size());
  }
  EXPECT_EQ(Compress(image, options).file.size(), shortest);
  const CompressOptions refused[] = {
      {.kind = kAwf, .lossless = true},
      {.kind = kAwh, .wavelet = kDaub97, .pad = false, .lossless = true},
      {.kind = kAwh, .bytes = 500, .lossless = true},
      {.kind = kAwh, .psnr = 40, .lossless = true},
      {.kind = kAwh, .region = Region{0, 0, 9, 9}, .lossless = true},
      {.kind = kAwh, .bytes = 15}};
  for (const CompressOptions& one : refused)
    EXPECT_EQ(test::CodeOf([&] { Compress(image, one); }), Errc::kInvalidArgument);
}

TEST(ContextKind, SpendsItsBytesOnAQualityOrARegion) {
  const Image image = test::NamedImage("lcgnoise", 96, 96);
  for (const WaveletKind wavelet : {kDaub97, kInteger22}) {
    CompressOptions options{.kind = kAwh, .wavelet = wavelet, .rate = 2};
    const Image plain = Decompress(Compress(image, options).file, kAwh).image;
    const Region region{30, 40, 60, 70};
    options.region = region;
    const Image favoured = Decompress(Compress(image, options).file, kAwh).image;
    EXPECT_GT(*Measure(image, favoured, region).psnr, *Measure(image, plain, region).psnr + 5);
    options.region.reset();
    options.psnr = 30;
    const Bytes good = Compress(image, options).file;
    EXPECT_GE(*Measure(image, Decompress(good, kAwh).image).psnr, 30);
    const ByteView shorter = ByteView(good).first(good.size() * 98 / 100);
    EXPECT_LT(*Measure(image, Decompress(shorter, kAwh).image).psnr, 30);
  }
}

// The units of thresholds, means and levels are those of the other kinds.
TEST(ContextKind, ReportsInTheUnitsOfTheOthers) {
  const Image image = test::NamedImage("blobs", 64, 70);
  for (const WaveletKind wavelet : {kDaub97, kInteger53}) {
    std::vector<PassReport> heard;
    CompressOptions options{.kind = kAwh, .wavelet = wavelet, .levels = 3, .rate = 1};
    options.onPass = [&](const PassReport& pass) { heard.push_back(pass); };
    const CompressResult coded = Compress(image, options);
    options.kind = kAwf;
    const CompressResult other = Compress(image, options);
    EXPECT_EQ(coded.levels, other.levels);
    EXPECT_NEAR(coded.exponent, other.exponent, 1);
    EXPECT_EQ(coded.passes.front().pass, 1);
    EXPECT_EQ(coded.passes.front().threshold, std::ldexp(0.5F, coded.exponent));
    EXPECT_EQ(coded.passes.back().bits, 8 * std::ssize(coded.file));
    EXPECT_EQ(heard.size(), coded.passes.size() + other.passes.size());
    const FileInfo info = Inspect(coded.file, kAwh);
    EXPECT_EQ(info.codedCols, 72);
    EXPECT_FALSE(info.budget.has_value());
    const DecompressResult back = Decompress(coded.file, kAwh);
    // A writer runs on to the end of a pass that the last byte is in.
    EXPECT_LE(back.passes.back().significant, coded.passes.back().significant);
    EXPECT_GE(back.passes.back().significant, coded.passes.back().significant * 9 / 10);
  }
}

}  // namespace
}  // namespace marovia
