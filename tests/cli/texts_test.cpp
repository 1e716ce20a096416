#include <gtest/gtest.h>
#include <limits>

#include "codec/report_text.h"
#include "measures/measure_text.h"

namespace marovia {
namespace {

TEST(PassReportText, HasThreeLinesAsTheReportBoxWantsThem) {
  EXPECT_EQ(PassReportText({.pass = 1, .threshold = 4096, .significant = 7, .bits = 65536}, 256,
                           256, false),
            "Pass  1.  Threshold =  4096.\r\n"
            "Number of significant values encoded:   7\r\n"
            "Bit rate:   1\r\n");
  EXPECT_EQ(
      PassReportText({.pass = 14, .threshold = 0.5F, .significant = 0, .bits = 1}, 1, 3, true),
      "Pass  14.  Threshold =  0.5.\r\n"
      "Number of significant values decoded:   0\r\n"
      "Bit rate:   0.333333333333333\r\n");
}

TEST(PassReportText, CountsThePixelsOfTheLargestImage) {
  const PassReport report{.pass = 1, .threshold = 1, .significant = 1, .bits = 1 << 30};
  EXPECT_TRUE(
      PassReportText(report, 32767, 32767, false).ends_with("Bit rate:   1.00006103795033\r\n"));
}

TEST(PSNRVal, HasNoValueWhereTheErrorHasNone) {
  EXPECT_EQ(PSNRVal(1), "PSNR error:  48.1308");
  EXPECT_EQ(PSNRVal(65025), "PSNR error:  0");
  for (const float none : {0.0F, -1.0F, std::numeric_limits<float>::quiet_NaN()})
    EXPECT_EQ(PSNRVal(none), "Error computing PSNR.");
}

TEST(MeasureText, OfARegionGivesTheMeanSquareWhereThatOfAnImageGivesItsRoot) {
  const ErrorMeasures errors{
      .supNorm = 12, .meanSquareError = 2, .rootMeanSquare = 1.4142135623730951, .psnr = 45.1205F};
  EXPECT_EQ(MeanSquareText(errors, MeasuredArea::kImage),
            "Root Mean Square Error:  1.4142135623731");
  EXPECT_EQ(MeanSquareText(errors, MeasuredArea::kRegion), "ROI Mean Square Error:  2");
  EXPECT_EQ(SupNormText(errors, MeasuredArea::kRegion), "ROI Sup-norm error:  12");
  EXPECT_EQ(PsnrText({}, MeasuredArea::kRegion), "ROI Error computing PSNR.");
}

}  // namespace
}  // namespace marovia
