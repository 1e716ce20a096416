#include <cmath>
#include <gtest/gtest.h>

#include "marovia/measures.h"

#include "measures/measure_text.h"
#include "tests/support/code_of.h"

namespace marovia {
namespace {

using enum MeasuredArea;
using test::CodeOf;

TEST(Measures, OfIdenticalImagesAreZeroAndHaveNoPsnr) {
  const Image image(5, 7, 90);
  const ErrorMeasures measures = Measure(image, image);
  EXPECT_EQ(measures.supNorm, 0);
  EXPECT_EQ(measures.rootMeanSquare, 0);
  EXPECT_FALSE(measures.psnr);
  EXPECT_EQ(SupNormText(measures, kImage), "Sup-norm error:  0");
  EXPECT_EQ(MeanSquareText(measures, kImage), "Root Mean Square Error:  0");
  EXPECT_EQ(PsnrText(measures, kImage), "Error computing PSNR.");
  EXPECT_EQ(PsnrText(measures, kRegion), "ROI Error computing PSNR.");
}

TEST(Measures, CoverTheImageOrTheRegionWithItsBounds) {
  Image source(4, 5, 100);
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
  }
  const ErrorMeasures point = Measure(source, other, Region{1, 2, 1, 2});
  EXPECT_EQ(SupNormText(point, kRegion), "ROI Sup-norm error:  3");
  EXPECT_EQ(MeanSquareText(point, kRegion), "ROI Mean Square Error:  9");
  EXPECT_EQ(MeanSquareText(Measure(source, other), kImage),
            "Root Mean Square Error:  1.11803398874989");
}

TEST(Measures, AreSummedInSinglePrecision) {
  Image black(4096, 64);
  const Image white(4096, 64, 255);
  black(4095, 63) = 254;
  float sum = 0;
  for (int i = 0; i < 4096 * 64 - 1; ++i) sum += 65025;
  sum += 1;
  EXPECT_EQ(Measure(black, white).meanSquareError, sum / (4096 * 64));
  EXPECT_NE(sum / (4096 * 64), 65025.0F);
}

TEST(Psnr, OfAMeanSquareErrorIsSentToSevenDigits) {
  const struct {
    float mse;
    std::string_view text;
  } cases[] = {{1, "PSNR error:  48.1308"},      {65025, "PSNR error:  0"},
               {0, "Error computing PSNR."},     {-1, "Error computing PSNR."},
               {NAN, "Error computing PSNR."},   {0.0001F, "PSNR error:  88.1308"},
               {130050, "PSNR error:  -3.0103"}, {100, "PSNR error:  28.1308"}};
  for (const auto& c : cases) EXPECT_EQ(PSNRVal(c.mse).substr(0, c.text.size()), c.text) << c.mse;
  EXPECT_EQ(PSNRVal(1), "PSNR error:  48.1308");
}

TEST(Measures, FailWhereTheImagesOrTheRegionDoNotFit) {
  const Image image(4, 5);
  EXPECT_EQ(CodeOf([&] { Measure(image, Image(5, 4)); }), Errc::kIndex);
  EXPECT_EQ(CodeOf([&] { Measure(Image(), Image()); }), Errc::kIndex);
  for (const Region& region : {Region{0, 0, 4, 0}, Region{0, 0, 0, 5}, Region{-1, 0, 0, 0},
                               Region{2, 0, 1, 0}, Region{0, 3, 0, 2}}) {
    EXPECT_EQ(CodeOf([&] { Measure(image, image, region); }), Errc::kIndex);
  }
}

}  // namespace
}  // namespace marovia
