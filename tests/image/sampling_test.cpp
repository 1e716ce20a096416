#include "image/sampling.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "image_files.h"

namespace marovia {
namespace {

TEST(SourceLine, RoundsHalfToEvenAndStopsAtTheLastLine) {
  const std::tuple<int, int, int> cases[] = {
      {512, 1, 2},     {512, 255, 510}, {512, 256, 511}, {256, 1, 1},         {256, 255, 255},
      {256, 256, 255}, {128, 1, 0},     {128, 3, 2},     {128, 5, 2},         {128, 256, 127},
      {1, 1, 0},       {1, 256, 0},     {3, 128, 2},     {32767, 256, 32766}, {32767, 1, 128},
  };
  for (const auto& [lines, coordinate, source] : cases) {
    EXPECT_EQ(SourceLine(coordinate, lines), source) << lines << " " << coordinate;
  }
}

TEST(SourceLine, IsTheExactProductRoundedForEverySize) {
  for (int lines = 1; lines <= 32767; lines += lines < 1100 ? 1 : 97) {
    for (int coordinate = 1; coordinate <= kPictureSide; ++coordinate) {
      const int product = coordinate * lines;
      int nearest = product / 256 + (product % 256 > 128 ? 1 : 0);
      if (product % 256 == 128 && nearest % 2 == 1) ++nearest;
      ASSERT_EQ(SourceLine(coordinate, lines), std::min(nearest, lines - 1)) << lines;
    }
  }
}

TEST(SampleImage, PutsDisplayCoordinateOneAtTheCorner) {
  Image image(512, 128);
  for (int row = 0; row < 512; ++row) {
    for (int col = 0; col < 128; ++col) {
      image(row, col) = static_cast<std::uint8_t>(row / 2 ^ col);
    }
  }
  const Image picture = SampleImage(image);
  ASSERT_EQ(picture.Rows(), kPictureSide);
  ASSERT_EQ(picture.Cols(), kPictureSide);
  EXPECT_EQ(picture(0, 0), image(2, 0));
  EXPECT_EQ(picture(0, 2), image(2, 2));
  EXPECT_EQ(picture(99, 4), image(200, 2));
  EXPECT_EQ(picture(255, 255), image(511, 127));
  EXPECT_EQ(SampleImage(Image(1, 1, 77)), Image(kPictureSide, kPictureSide, 77));
  EXPECT_EQ(CodeOf([] { SampleImage(Image()); }, "0 pixels"), Errc::kIndex);
}

TEST(SampleCoefficients, ShowsRoundedMagnitudesUpToWhite) {
  const std::pair<float, int> cases[] = {{-300, 255},   {254.5F, 254}, {255.5F, 255}, {-0.5F, 0},
                                         {1.5F, 2},     {-2.5F, 2},    {-3.4F, 3},    {32767, 255},
                                         {-32767, 255}, {0.49F, 0},    {-4e9F, 255},  {1e38F, 255}};
  for (const auto& [value, grey] : cases) {
    EXPECT_EQ(SampleCoefficients(Grid<float>(2, 3, value))(9, 200), grey) << value;
  }
}

}  // namespace
}  // namespace marovia
