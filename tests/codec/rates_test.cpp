// What a rate, a number of bytes and a region promise.
#include <cmath>
#include <cstdint>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <utility>

#include "marovia/codec.h"
#include "marovia/measures.h"

#include "codec/geometry.h"
#include "tests/support/code_of.h"
#include "tests/support/library_options.h"
#include "tests/support/test_images.h"

namespace marovia {
namespace {

using enum FileKind;
using enum WaveletKind;

constexpr FileKind kBudgetKinds[] = {kAwb, kAwa, kAwd, kAwf, kAwc};
constexpr FileKind kLossyKinds[] = {kAwb, kAwa, kAwd, kAwf, kAwc, kAwh};

Image DecodedAt(ByteView file, FileKind kind, double rate) {
  return Decompress(file, kind, test::OptionsOfRate(rate)).image;
}

Image ReadSample(const std::string& name) {
  std::ifstream file(MAROVIA_TEST_DATA "/../../Images/" + name, std::ios::binary);
  return ReadImage(Bytes(std::istreambuf_iterator<char>(file), {})).image;
}

TEST(Rates, BelowThatOfTheFileGivePicturesThatGrowPoorerSmoothly) {
  const Image image = Cropped(ReadSample("camera.pgm"), {256, 320});
  for (const FileKind kind : kLossyKinds) {
    for (const WaveletKind wavelet : {kDaub97, kInteger53, kInteger22}) {
      const Bytes file = Compress(image, {kind, wavelet, 4, 1}).file;
      float before = 0;
      for (double rate = 0.1; rate <= 1; rate += 0.06) {
        const float psnr = *Measure(image, DecodedAt(file, kind, rate)).psnr;
        EXPECT_GT(psnr, before) << Extension(kind) << " at " << rate;
        EXPECT_TRUE(before == 0 || psnr < before + 4) << Extension(kind) << " at " << rate;
        before = psnr;
      }
    }
  }
}

// The last group of symbols may exceed a budget.
TEST(Rates, AreMetToTheBitWhateverTheSides) {
  constexpr double kGroupBytes = 12;
  for (const auto& [rows, cols] : {std::pair(1, 5000), {5000, 1}, {150, 200}, {61, 83}}) {
    for (const double rate : {0.05, 0.5}) {
      const Image image = test::NamedImage("lcgnoise", rows, cols);
      const Bytes file = Compress(image, {.rate = rate}).file;
      EXPECT_EQ(Inspect(file, kAwf).budget, std::lround(rate * rows * cols));
      EXPECT_NEAR(static_cast<double>(file.size()), rate * rows * cols / 8, kGroupBytes);
    }
  }
}

TEST(Rates, AboveThatOfTheFileAreHeldToIt) {
  const Image image = test::NamedImage("blobs", 33, 48);
  const Bytes file = Compress(image, {kAwf, kInteger53, 2, 0.5}).file;
  EXPECT_FALSE(Decompress(file, kAwf, test::OptionsOfRate(0.5)).rateHeld);
  const DecompressResult held = Decompress(file, kAwf, test::OptionsOfRate(0.6));
  EXPECT_TRUE(held.rateHeld);
  EXPECT_FALSE(held.truncated);
  EXPECT_TRUE(held.image == Decompress(file, kAwf).image);
}

// A budget is tested after each group, and before the first one only at a position that the pass
// does not find; awf makes that test not at all.
TEST(Budget, WithinTheHeadersChargeSendsOneGroupOrNothing) {
  const Image found = test::NamedImage("blobs", 32, 32);
  const Image passedOver = test::NamedImage("flat", 32, 32);
  for (const FileKind kind : kBudgetKinds) {
    for (const bool first : {true, false}) {
      const Image& image = first ? found : passedOver;
      const CompressResult result = Compress(image, {kind, kInteger53, 3, 0.1});
      EXPECT_EQ(result.passes.back().significant, first || kind == kAwf ? 1 : 0);
      const DecompressResult back = Decompress(result.file, kind);
      EXPECT_TRUE(back.image.SameShape(image));
      EXPECT_FALSE(back.truncated) << Extension(kind);
    }
  }
}

TruncateOptions ToRate(double rate) {
  TruncateOptions options;
  options.rate = rate;
  return options;
}

TruncateOptions ToBytes(std::int64_t most) {
  TruncateOptions options;
  options.bytes = most;
  return options;
}

struct LongFile {
  FileKind kind;
  Bytes file;
  // The same stream with a budget that allows any rate: that of a lossless file as a lossy one.
  FileKind lossyKind;
  Bytes lossy;
};

LongFile MakeLong(FileKind kind, WaveletKind wavelet, const Image& image, bool region) {
  CompressOptions options{kind, wavelet, 3, 2};
  if (region) options.region = Region{2, 3, 20, 30};
  LongFile made{kind, Compress(image, options).file, kind, {}};
  made.lossy = made.file;
  if (kind == kAwg) {
    made.lossyKind = kAwf;
    made.lossy.insert(made.lossy.begin(), {0xFF, 0xFF, 0xFF, 0x7F});
  }
  return made;
}

TEST(Truncate, GivesAFileThatDecodesAsTheLongOneAtThatRate) {
  for (const FileKind kind : {kAwb, kAwa, kAwd, kAwf, kAwg, kAwc, kAwh}) {
    for (const int side : {40, 45}) {
      for (const WaveletKind wavelet : {kDaub97, kInteger53, kInteger22}) {
        if (kind == kAwg && wavelet == kDaub97) continue;
        const Image image = test::NamedImage("rings", side, 48);
        const LongFile made = MakeLong(kind, wavelet, image, side == 45);
        for (const double rate : {0.01, 0.07, 0.1, 0.33, 0.8, 1.5}) {
          SCOPED_TRACE(testing::Message()
                       << Extension(kind) << ", " << side << " rows at " << rate);
          const TruncateResult cut = Truncate(made.file, kind, ToRate(rate));
          EXPECT_EQ(cut.kind, made.lossyKind);
          EXPECT_FALSE(cut.rateHeld);
          const DecompressResult back = Decompress(cut.file, cut.kind);
          EXPECT_TRUE(back.image == DecodedAt(made.lossy, made.lossyKind, rate));
          EXPECT_FALSE(back.truncated);
          EXPECT_LT(cut.file.size(), made.file.size());
        }
      }
    }
  }
}

TEST(Truncate, LeavesAFileThatIsShortEnoughAsItIs) {
  const Image image = test::NamedImage("rings", 40, 48);
  for (const FileKind kind : {kAwb, kAwa, kAwd, kAwf, kAwg, kAwc, kAwh}) {
    const Bytes file = Compress(image, {kind, kInteger53, 3, 0.5}).file;
    const auto size = static_cast<std::int64_t>(file.size());
    for (const TruncateOptions& options : {ToRate(20), ToBytes(size)}) {
      const TruncateResult whole = Truncate(file, kind, options);
      EXPECT_TRUE(whole.rateHeld);
      EXPECT_EQ(whole.kind, kind);
      EXPECT_EQ(whole.file, file) << Extension(kind);
    }
    EXPECT_EQ(test::CodeOf([&] { Truncate(file, kind, {}); }), Errc::kInvalidArgument);
    EXPECT_EQ(test::CodeOf([&] { Truncate(file, kind, ToRate(-1)); }), Errc::kInvalidArgument);
  }
}

// From the first number of bytes that holds a header and a stream, every number is kept, and nearly
// used up.
TEST(Bytes, AreTheMostThatAFileHas) {
  const Image image = test::NamedImage("rings", 45, 48);
  for (const FileKind kind : {kAwb, kAwa, kAwd, kAwf, kAwg, kAwc, kAwh}) {
    const LongFile made = MakeLong(kind, kInteger53, image, false);
    for (std::int64_t most = 34; most < 300; most += 7) {
      SCOPED_TRACE(testing::Message() << Extension(kind) << " in " << most);
      const TruncateResult cut = Truncate(made.file, kind, ToBytes(most));
      EXPECT_LE(static_cast<std::int64_t>(cut.file.size()), most);
      EXPECT_GE(static_cast<std::int64_t>(cut.file.size()), most - 6);
      EXPECT_FALSE(Decompress(cut.file, cut.kind).truncated);
      if (kind == kAwg) continue;
      CompressOptions compress{kind, kInteger53, 3};
      compress.bytes = most;
      const Bytes file = Compress(image, compress).file;
      EXPECT_LE(static_cast<std::int64_t>(file.size()), most);
      EXPECT_GE(static_cast<std::int64_t>(file.size()), most - 6);
      EXPECT_FALSE(Decompress(file, kind).truncated);
    }
  }
}

// However long the tail behind the stream, and whether or not it is to be kept.
TEST(Bytes, NeverRaiseABudget) {
  const Image image = test::NamedImage("rings", 45, 61);
  for (const FileKind kind : {kAwb, kAwa, kAwd, kAwf, kAwg}) {
    const LongFile made = MakeLong(kind, kInteger22, image, false);
    Bytes tailed = made.file;
    for (unsigned i = 0; i < 1000; ++i) tailed.push_back(static_cast<std::uint8_t>(i * i * 7 + i));
    for (std::size_t n = 0; n < 200; ++n) {
      const auto most = static_cast<std::int64_t>(34 + tailed.size() * n / 195);
      SCOPED_TRACE(testing::Message() << Extension(kind) << " in " << most);
      const TruncateResult cut = Truncate(Bytes(tailed), kind, ToBytes(most));
      ASSERT_EQ(cut.file, Truncate(tailed, kind, ToBytes(most)).file);
      ASSERT_LE(static_cast<std::int64_t>(cut.file.size()), most);
      const auto budget = Inspect(cut.file, cut.kind).budget;
      ASSERT_LE(budget, Inspect(tailed, kind).budget.value_or(INT32_MAX));
      const DecompressResult back = Decompress(cut.file, cut.kind);
      ASSERT_FALSE(back.truncated);
      ASSERT_TRUE(back.image == (budget ? DecodedAt(made.lossy, made.lossyKind,
                                                    *budget / static_cast<double>(image.Size()))
                                        : image));
    }
    for (const std::int64_t most : {INT64_MIN, std::int64_t{-1}, std::int64_t{0}, std::int64_t{9}})
      EXPECT_EQ(test::CodeOf([&] { Truncate(tailed, kind, ToBytes(most)); }),
                Errc::kInvalidArgument);
  }
}

bool Reaches(const Image& image, ByteView file, FileKind kind, double psnr) {
  const auto found = Measure(image, Decompress(file, kind).image).psnr;
  return !found || *found >= psnr;
}

// One clearly shorter is not good enough.
TEST(Psnr, IsReachedInAboutTheFewestBytes) {
  const Image image = test::NamedImage("rings", 61, 83);
  for (const FileKind kind : kLossyKinds) {
    for (const WaveletKind wavelet : {kDaub97, kInteger53}) {
      for (const double psnr : {5.0, 25.0, 38.5, 300.0}) {
        SCOPED_TRACE(testing::Message() << Extension(kind) << " to " << psnr);
        CompressOptions options{kind, wavelet};
        options.psnr = psnr;
        const Bytes file = Compress(image, options).file;
        EXPECT_TRUE(Reaches(image, file, kind, psnr));
        options.psnr.reset();
        if (psnr < 20) continue;
        options.bytes = static_cast<std::int64_t>(file.size()) * 98 / 100;
        EXPECT_FALSE(Reaches(image, Compress(image, options).file, kind, psnr));
      }
    }
  }
}

TEST(Psnr, ThatIsOutOfReachIsRefused) {
  CompressOptions options{kAwf};
  options.psnr = 60;
  options.pad = false;  // odd sides do not come back faithfully
  const Image odd = test::NamedImage("rings", 45, 47);
  EXPECT_EQ(test::CodeOf([&] { Compress(odd, options); }), Errc::kInvalidArgument);
  options.pad = true;
  EXPECT_NO_THROW(Compress(odd, options));
  options.region = Region{0, 0, 9, 9};
  EXPECT_EQ(test::CodeOf([&] { Compress(odd, options); }), Errc::kInvalidArgument);
}

TEST(Region, GetsTheBitsThatTheRestOfTheImageGoesWithout) {
  const Image image = test::NamedImage("lcgnoise", 96, 96);
  const Region region{30, 40, 60, 70};
  const Region outside{0, 0, 12, 95};
  for (const FileKind kind : kLossyKinds) {
    for (const WaveletKind wavelet : {kDaub97, kInteger53, kInteger22}) {
      CompressOptions options{kind, wavelet, 2, 2};
      const Image plain = Decompress(Compress(image, options).file, kind).image;
      options.region = region;
      const Image favoured = Decompress(Compress(image, options).file, kind).image;
      EXPECT_GT(*Measure(image, favoured, region).psnr, *Measure(image, plain, region).psnr + 6);
      EXPECT_LT(*Measure(image, favoured, outside).psnr, *Measure(image, plain, outside).psnr - 1);
      options.share = 0;
      const CompressResult without = Compress(image, options);
      options.region.reset();
      // Where the header's charge is the same, a share of nothing is no region at all.
      if (kind != kAwf) {
        EXPECT_EQ(without.file, Compress(image, options).file);
      }
    }
  }
}

}  // namespace
}  // namespace marovia
