// Every answer of an explorer is that of the library to the same question.
#include "explore/explorer.h"

#include "codec/coders.h"
#include "explore/similarity.h"
#include "tests/support/testing.h"

namespace marovia::test {
namespace {

Image Drawn(int rows, int cols) {
  return NamedImage("rings", rows, cols);
}

SharedImage Picture() {
  return std::make_shared<const Image>(Drawn(72, 90));
}

Look Measured(Explorer& explorer, std::int64_t bytes) {
  Look look = *explorer.LookAt(bytes, {});
  explorer.Measure(look);
  return look;
}

void ExpectPictureOf(const TruncateResult& file, const Look& look, const Image& source) {
  const Image picture = Decompress(file.file, file.kind).image;
  EXPECT_EQ(*look.picture, picture);
  EXPECT_EQ(look.file.file, file.file);
  EXPECT_EQ(look.measures->psnr, Measure(source, picture).psnr);
  EXPECT_EQ(look.similarity, Similarity(source, picture));
}

TEST(Explorer, AnswersAsTheLibraryInEveryKind) {
  const SharedImage source = Picture();
  for (const FileKind kind : AllKinds()) {
    SCOPED_TRACE(Extension(kind));
    const Bytes master = Compress(*source, {.kind = kind, .rate = kWholeRate}).file;
    Explorer coded(source, {.kind = kind});
    ASSERT_TRUE(coded.Code(1, {}));
    const Look quick = *coded.LookAt(400, {});
    ASSERT_TRUE(coded.Code(kWholeRate, {}));
    EXPECT_EQ(*quick.picture, *coded.LookAt(400, {})->picture);
    EXPECT_EQ(coded.FileOf(coded.Scale().most).file, master);
    Explorer opened(master, kind, source);
    EXPECT_EQ(opened.Stops().size(), coded.Stops().size());
    for (const std::int64_t bytes : {std::int64_t{100}, std::int64_t{901}, std::ssize(master)}) {
      const TruncateResult cut = Truncate(master, kind, {.rate = {}, .bytes = bytes});
      EXPECT_EQ(coded.FileOf(bytes).file, cut.file);
      for (Explorer* explorer : {&coded, &opened})
        ExpectPictureOf(cut, Measured(*explorer, bytes), *source);
    }
    float before = 0;
    for (const std::int64_t bytes : coded.Stops()) {
      const auto psnr = coded.PointAt(bytes, {})->psnr;
      EXPECT_GE(psnr.value_or(99), before) << bytes;
      before = psnr.value_or(99);
    }
    EXPECT_GE(coded.Stops().size(), 6U);
  }
}

TEST(Explorer, CodesEachLengthAnewForARegionAndMeasuresIt) {
  const SharedImage source = Picture();
  const Region region{10, 20, 40, 50};
  for (const Coder& coder : AllCoders()) {
    SCOPED_TRACE(coder.extension);
    Explorer plain(source, {.kind = coder.kind});
    ASSERT_TRUE(plain.Code(kWholeRate, {}) && plain.LookAt(1500, {}));
    Explorer explorer = plain;
    explorer.SetRegion(region, 0.8F);
    const TruncateResult file = explorer.FileOf(1500);
    EXPECT_LE(file.file.size(), 1500U);
    const Look look = Measured(explorer, 1500);
    ExpectPictureOf(file, look, *source);
    EXPECT_EQ(look.inRegion->psnr, Measure(*source, *look.picture, region).psnr);
    EXPECT_GT(*look.inRegion->psnr,
              *Measure(*source, *plain.LookAt(1500, {})->picture, region).psnr + 1);
  }
}

TEST(Explorer, FindsTheFewestBytesForAPsnr) {
  Explorer explorer(Picture(), {});
  ASSERT_TRUE(explorer.Code(kWholeRate, {}));
  const std::int64_t bytes = *explorer.BytesForPsnr(35, {});
  EXPECT_GE(*explorer.PointAt(bytes, {})->psnr, 35);
  EXPECT_LT(*explorer.PointAt(bytes - bytes / 100 - 1, {})->psnr, 35);
  EXPECT_EQ(*explorer.BytesForPsnr(500, {}), explorer.Scale().most);
}

TEST(Explorer, EndsWhereItsWatchSaysSoAndGoesOnAfterwards) {
  Explorer explorer(Picture(), {});
  const Watch no = [](double) { return false; };
  double part = 0;
  const Watch yes = [&](double now) {
    EXPECT_GE(now, part);
    return (part = now) <= 1;
  };
  EXPECT_FALSE(explorer.Code(kWholeRate, no));
  ASSERT_TRUE(explorer.Code(kWholeRate, yes));
  EXPECT_FALSE(explorer.LookAt(500, no) || explorer.PointAt(500, no) ||
               explorer.BytesForPsnr(30, no));
  part = 0;
  EXPECT_TRUE(explorer.LookAt(500, yes));
  EXPECT_GT(part, 0.3);
}

TEST(Explorer, TakesAFileAloneAndAnImageOfAnySize) {
  for (const auto& [rows, cols] : {std::pair{1, 1}, {2, 7}, {5, 200}}) {
    const auto source = std::make_shared<const Image>(Drawn(rows, cols));
    for (const FileKind kind : AllKinds()) {
      Explorer explorer(Compress(*source, {.kind = kind, .rate = 4}).file, kind, Picture());
      const Look look = Measured(explorer, 0);
      EXPECT_TRUE(look.picture->SameShape(*source) && !look.measures);
      EXPECT_LE(std::ssize(look.file.file), explorer.Scale().Least());
    }
  }
}

// What each window's similarity is by its definition.
double PlainSimilarity(const Image& one, const Image& other) {
  double total = 0;
  int windows = 0;
  for (int row = 0; row + 8 <= one.Rows(); row += 4) {
    for (int col = 0; col + 8 <= one.Cols(); col += 4, ++windows) {
      double a = 0, b = 0, aa = 0, bb = 0, ab = 0;
      for (int i = 0; i < 64; ++i) {
        const double x = one(row + i / 8, col + i % 8) / 64.0;
        const double y = other(row + i / 8, col + i % 8) / 64.0;
        a += x, b += y, aa += 64 * x * x, bb += 64 * y * y, ab += 64 * x * y;
      }
      total += (2 * a * b + 6.5025) * (2 * (ab - a * b) + 58.5225) /
               ((a * a + b * b + 6.5025) * (aa - a * a + bb - b * b + 58.5225));
    }
  }
  return total / windows;
}

TEST(Similarity, IsTheMeanOverWindowsAndOneOnlyForTheSameImage) {
  const Image source = Drawn(64, 96);
  Image other = source;
  std::mt19937 random(3);
  for (auto& sample : other.Samples())
    sample = static_cast<std::uint8_t>(sample / 2 + random() % 64);
  EXPECT_NEAR(Similarity(source, other), PlainSimilarity(source, other), 1e-12);
  for (const Image& image : {source, Drawn(1, 1), Drawn(3, 50), Drawn(9, 7)}) {
    EXPECT_EQ(Similarity(image, image), 1);
    EXPECT_LT(Similarity(image, Image(image.Rows(), image.Cols(), 200)), 0.99);
  }
}

}  // namespace
}  // namespace marovia::test
