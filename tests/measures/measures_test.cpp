#include "measures/measure_text.h"
#include "measures/region.h"
#include "tests/support/testing.h"

namespace marovia {
namespace {

using enum MeasuredArea;
using test::CodeOf;

TEST(Measures, CoverTheImageOrTheRegionWithItsBounds) {
  const Image source(4, 5, 100);
  Image other = source;
  other(1, 2) = 103;
  other(3, 4) = 96;
  const struct {
    std::optional<Region> region;
    float sup, mse;
  } cases[] = {{std::nullopt, 4, 25.0F / 20}, {Region{1, 2, 1, 2}, 3, 9},
               {Region{1, 1, 2, 3}, 3, 1.5F}, {Region{0, 0, 2, 1}, 0, 0},
               {Region{3, 4, 3, 4}, 4, 16},   {Region{0, 0, 3, 4}, 4, 25.0F / 20}};
  for (const auto& c : cases) {
    const ErrorMeasures measures = Measure(source, other, c.region);
    EXPECT_EQ(measures.supNorm, c.sup);
    EXPECT_EQ(measures.meanSquareError, c.mse);
    EXPECT_EQ(measures.rootMeanSquare, std::sqrt(static_cast<double>(c.mse)));
    EXPECT_EQ(measures.psnr.has_value(), c.mse > 0);
  }
  const ErrorMeasures point = Measure(source, other, Region{1, 2, 1, 2});
  EXPECT_EQ(SupNormText(point, kRegion), "ROI Sup-norm error:  3");
  EXPECT_EQ(MeanSquareText(point, kRegion), "ROI Mean Square Error:  9");
  EXPECT_EQ(SupNormText(point, kImage), "Sup-norm error:  3");
  EXPECT_EQ(MeanSquareText(Measure(source, other), kImage),
            "Root Mean Square Error:  1.11803398874989");
  const ErrorMeasures none = Measure(source, source);
  EXPECT_EQ(PsnrText(none, kImage), "Error computing PSNR.");
  EXPECT_EQ(PsnrText(none, kRegion), "ROI Error computing PSNR.");
}

TEST(Measures, AreSummedInSinglePrecision) {
  const Image black(4096, 64);
  const Image white(4096, 64, 255);
  float sum = 0;
  for (int i = 0; i < 4096 * 64; ++i) sum += 65025;
  EXPECT_EQ(Measure(black, white).meanSquareError, sum / (4096 * 64));
  EXPECT_NE(sum / (4096 * 64), 65025.0F);
}

TEST(Psnr, OfAMeanSquareErrorIsSentToSevenDigits) {
  const std::pair<float, std::string_view> cases[] = {
      {1.0F, "PSNR error:  48.1308"},  {65025.0F, "PSNR error:  0"},
      {0.0F, "Error computing PSNR."}, {-1.0F, "Error computing PSNR."},
      {NAN, "Error computing PSNR."},  {130050.0F, "PSNR error:  -3.0103"}};
  for (const auto& [mse, text] : cases) EXPECT_EQ(PSNRVal(mse).substr(0, text.size()), text) << mse;
  EXPECT_EQ(PSNRVal(1), "PSNR error:  48.1308");
}

TEST(Measures, FailWhereTheImagesOrTheRegionDoNotFit) {
  const Image image(4, 5);
  EXPECT_EQ(CodeOf([&] { Measure(image, Image(5, 4)); }), Errc::kIndex);
  EXPECT_EQ(CodeOf([&] { Measure(Image(), Image()); }), Errc::kIndex);
  for (const Region& region : {Region{0, 0, 4, 0}, Region{0, 0, 0, 5}, Region{-1, 0, 0, 0},
                               Region{0, -1, 0, 0}, Region{2, 0, 1, 0}, Region{0, 3, 0, 2}}) {
    EXPECT_EQ(CodeOf([&] { Measure(image, image, region); }), Errc::kIndex);
  }
}

TEST(RegionCoordinates, AreOrderedScaledRoundedAndHeldToTheImage) {
  const struct {
    PictureRectangle drawn;
    int rows, cols;
    float rowUnits, colUnits;
    std::array<int, 4> region;
  } cases[] = {{{30, 20, 10, 40}, 256, 256, 1, 1, {10, 20, 30, 40}},
               {{10, 40, 30, 20}, 512, 128, 1, 1, {20, 10, 60, 20}},
               {{1, 3, 5, 7}, 128, 128, 1, 1, {0, 2, 2, 4}},  // 0.5, 1.5, 2.5 and 3.5
               {{-5, -1, 300, 256}, 256, 256, 1, 1, {0, 0, 255, 255}},
               {{0, 0, 255, 255}, 100, 37, 1, 1, {0, 0, 99, 36}},
               {{300, 300, 32767, 32767}, 256, 256, 15, 30, {20, 10, 255, 255}}};
  for (const auto& c : cases) {
    const Region r = GetROICoordinates(c.drawn, c.rows, c.cols, c.rowUnits, c.colUnits);
    EXPECT_EQ((std::array{r.row1, r.col1, r.row2, r.col2}), c.region);
  }
}

std::string MaskText(int levels, const Region& region, int widening, int rows = 8) {
  const auto mask = GetROIValues(rows, 8, region, widening, levels);
  std::string text;
  for (int r = 0; r < rows; ++r) {
    for (const std::uint8_t value : mask.Row(r)) text += value == 0 ? '.' : '#';
    text += '\n';
  }
  return text;
}

// A coefficient of level k stands for the pixel at 2^k times its place in its band; the region
// reaches the widening further at level 1, and (2^(k-1) + 1) times as far above and in the low
// band.
TEST(RegionMask, MarksInEveryBandWhatTheWidenedRegionHolds) {
  EXPECT_EQ(MaskText(0, {1, 2, 2, 7}, 5, 4), "........\n..######\n..######\n........\n");
  const std::string half = "........\n.##..##.\n.##..##.\n........\n";
  EXPECT_EQ(MaskText(1, {2, 2, 4, 4}, 0), half + half);
  EXPECT_EQ(MaskText(1, {4, 4, 4, 4}, 1),
            "........\n.###....\n.###..#.\n.###....\n"
            "........\n........\n..#...#.\n........\n");
  EXPECT_EQ(MaskText(2, {7, 7, 7, 7}, 1),
            "........\n.#.#....\n........\n.#.#...#\n"
            "........\n........\n........\n...#...#\n");
}

}  // namespace
}  // namespace marovia
