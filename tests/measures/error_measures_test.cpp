#include "measures/measure_text.h"
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

}  // namespace
}  // namespace marovia
