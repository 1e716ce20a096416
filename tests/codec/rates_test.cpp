// What a rate, a number of bytes, a quality and a region promise.
#include "tests/support/plain_codec.h"

namespace marovia {
namespace {

using enum FileKind;
using enum WaveletKind;
using test::CodeOf;

DecompressResult DecodedAt(ByteView file, FileKind kind, double rate) {
  DecompressOptions options;
  options.rate = rate;
  return Decompress(file, kind, options);
}

// The last group of symbols may exceed a budget.
TEST(Rates, AreMetToTheBitWhateverTheSides) {
  for (const auto& [rows, cols] : {std::pair(1, 5000), {5000, 1}, {150, 200}, {61, 83}}) {
    const double bits = 0.05 * rows * cols;
    const Bytes file =
        Compress(test::NamedImage("lcgnoise", rows, cols), {.kind = kAwf, .rate = 0.05}).file;
    EXPECT_EQ(Inspect(file, kAwf).budget, std::lround(bits));
    EXPECT_NEAR(static_cast<double>(file.size()), bits / 8, 12);
  }
}

TEST(Rates, AboveThatOfTheFileAreHeldToIt) {
  const Image image = test::NamedImage("blobs", 33, 48);
  const Bytes file = Compress(image, {kAwf, kInteger53, 2, 0.5}).file;
  EXPECT_FALSE(DecodedAt(file, kAwf, 0.5).rateHeld);
  const DecompressResult held = DecodedAt(file, kAwf, 0.6);
  EXPECT_TRUE(held.rateHeld);
  EXPECT_FALSE(held.truncated);
  EXPECT_TRUE(held.image == Decompress(file, kAwf).image);
}

Bytes LongFile(FileKind kind, WaveletKind wavelet, const Image& image, bool inRegion = false) {
  CompressOptions options{kind, wavelet, 3, 2};
  if (inRegion) options.region = Region{2, 3, 20, 30};
  return Compress(image, options).file;
}

TEST(Truncate, GivesAFileThatDecodesAsTheLongOneAtThatRate) {
  for (const FileKind kind : AllKinds()) {
    for (const WaveletKind wavelet : {kDaub97, kInteger53}) {
      if (kind == kAwg && wavelet == kDaub97) continue;
      const int rows = wavelet == kDaub97 ? 40 : 45;
      const Bytes file = LongFile(kind, wavelet, test::NamedImage("rings", rows, 48), rows == 45);
      // A lossless file becomes a lossy one; with the largest budget of all it is one.
      Bytes lossy = file;
      if (kind == kAwg) lossy.insert(lossy.begin(), {0xFF, 0xFF, 0xFF, 0x7F});
      const FileKind lossyKind = kind == kAwg ? kAwf : kind;
      for (const double rate : {0.01, 0.07, 0.1, 0.33, 0.8, 1.5}) {
        SCOPED_TRACE(testing::Message() << Extension(kind) << ", " << rows << " rows at " << rate);
        const TruncateResult cut = Truncate(file, kind, {.rate = rate, .bytes = {}});
        EXPECT_EQ(cut.kind, lossyKind);
        EXPECT_FALSE(cut.rateHeld);
        const DecompressResult back = Decompress(cut.file, cut.kind);
        EXPECT_TRUE(back.image == DecodedAt(lossy, lossyKind, rate).image);
        EXPECT_FALSE(back.truncated);
        EXPECT_LT(cut.file.size(), file.size());
      }
    }
  }
}

TEST(Truncate, LeavesAFileThatIsShortEnoughAsItIs) {
  const Image image = test::NamedImage("rings", 40, 48);
  for (const FileKind kind : AllKinds()) {
    const Bytes file = Compress(image, {kind, kInteger53, 3, 0.5}).file;
    const auto size = static_cast<std::int64_t>(file.size());
    for (const TruncateOptions& options : {TruncateOptions{20.0, {}}, TruncateOptions{{}, size}}) {
      const TruncateResult whole = Truncate(file, kind, options);
      EXPECT_TRUE(whole.rateHeld && whole.kind == kind && whole.file == file) << Extension(kind);
    }
    EXPECT_EQ(CodeOf([&] { Truncate(file, kind, {}); }), Errc::kInvalidArgument);
    EXPECT_EQ(CodeOf([&] { Truncate(file, kind, {-1.0, {}}); }), Errc::kInvalidArgument);
  }
}

// From the first number of bytes that holds a header and a stream, every number is kept, and nearly
// used up.
TEST(Bytes, AreTheMostThatAFileHas) {
  const Image image = test::NamedImage("rings", 45, 48);
  const auto expectMost = [](const Bytes& file, FileKind kind, std::int64_t most) {
    const auto size = static_cast<std::int64_t>(file.size());
    EXPECT_TRUE(size <= most && size >= most - 6)
        << Extension(kind) << ": " << size << " of " << most;
    EXPECT_FALSE(Decompress(file, kind).truncated);
  };
  for (const FileKind kind : AllKinds()) {
    const Bytes file = LongFile(kind, kInteger53, image);
    for (std::int64_t most = 34; most < 300; most += 7) {
      const TruncateResult cut = Truncate(file, kind, {.rate = {}, .bytes = most});
      expectMost(cut.file, cut.kind, most);
      CompressOptions options{kind, kInteger53, 3};
      options.bytes = most;
      if (kind != kAwg) expectMost(Compress(image, options).file, kind, most);
    }
  }
}

// However long the tail behind the stream; a lossless file becomes a lossy one with the largest
// budget of all.
TEST(Bytes, NeverRaiseABudget) {
  const Image image = test::NamedImage("rings", 45, 61);
  for (const FileKind kind : plain::Kinds()) {
    const Bytes file = LongFile(kind, kInteger22, image);
    Bytes tailed = file;
    for (unsigned i = 0; i < 1000; ++i) tailed.push_back(static_cast<std::uint8_t>(i * i * 7 + i));
    Bytes lossy = file;
    if (kind == kAwg) lossy.insert(lossy.begin(), {0xFF, 0xFF, 0xFF, 0x7F});
    for (std::size_t most = 34; most < tailed.size(); most += tailed.size() / 90) {
      SCOPED_TRACE(testing::Message() << Extension(kind) << " in " << most);
      const TruncateOptions options{{}, static_cast<std::int64_t>(most)};
      const TruncateResult cut = Truncate(tailed, kind, options);
      ASSERT_EQ(Truncate(Bytes(tailed), kind, options).file, cut.file);
      ASSERT_LE(cut.file.size(), most);
      const auto budget = Inspect(cut.file, cut.kind).budget;
      ASSERT_LE(budget, Inspect(tailed, kind).budget.value_or(INT32_MAX));
      ASSERT_FALSE(Decompress(cut.file, cut.kind).truncated);
      const Image expected =
          budget ? DecodedAt(lossy, cut.kind, *budget / static_cast<double>(image.Size())).image
                 : image;
      ASSERT_EQ(Decompress(cut.file, cut.kind).image, expected);
    }
    for (const std::int64_t most : {INT64_MIN, std::int64_t{0}, std::int64_t{9}}) {
      EXPECT_EQ(CodeOf([&] { Truncate(tailed, kind, {{}, most}); }), Errc::kInvalidArgument);
    }
  }
}

bool Reaches(const Image& image, ByteView file, FileKind kind, double psnr) {
  const auto found = Measure(image, Decompress(file, kind).image).psnr;
  return !found || *found >= psnr;
}

// One clearly shorter is not good enough.
TEST(Psnr, IsReachedInAboutTheFewestBytesOrRefused) {
  const Image image = test::NamedImage("rings", 61, 83);
  CompressOptions options;
  options.wavelet = kInteger53;
  for (const FileKind kind : AllKinds()) {
    if (kind == kAwg) continue;
    options.kind = kind;
    for (const double psnr : {5.0, 25.0, 38.5, 300.0}) {
      options.psnr = psnr;
      const Bytes file = Compress(image, options).file;
      EXPECT_TRUE(Reaches(image, file, options.kind, psnr)) << psnr;
      CompressOptions shorter = options;
      shorter.psnr.reset();
      shorter.bytes = static_cast<std::int64_t>(file.size()) * 98 / 100;
      if (psnr < 20) continue;
      EXPECT_FALSE(Reaches(image, Compress(image, shorter).file, options.kind, psnr)) << psnr;
    }
  }
  options = {kAwf};
  options.psnr = 60;
  options.pad = false;  // odd sides do not come back faithfully
  EXPECT_EQ(CodeOf([&] { Compress(image, options); }), Errc::kInvalidArgument);
  options.pad = true;
  EXPECT_NO_THROW(Compress(image, options));
  options.region = Region{0, 0, 9, 9};
  EXPECT_EQ(CodeOf([&] { Compress(image, options); }), Errc::kInvalidArgument);
}

}  // namespace
}  // namespace marovia
