#include "image/sampling.h"

#include "tests/support/testing.h"

namespace marovia::test {
namespace {

TEST(SourceLine, IsTheExactProductRoundedToEvenAndHeldToTheLastLine) {
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
  for (int r = 0; r < 512; ++r) {
    for (int c = 0; c < 128; ++c) image(r, c) = static_cast<std::uint8_t>(r / 2 ^ c);
  }
  const Image picture = SampleImage(image);
  EXPECT_TRUE(picture.SameShape(Image(kPictureSide, kPictureSide)));
  EXPECT_EQ(picture(0, 2), image(2, 2));
  EXPECT_EQ(picture(99, 4), image(200, 2));
  EXPECT_EQ(picture(255, 255), image(511, 127));
  EXPECT_EQ(CodeOf([] { SampleImage(Image()); }, "0 pixels"), Errc::kIndex);
}

TEST(SampleCoefficients, ShowsRoundedMagnitudesUpToWhite) {
  const std::pair<float, int> cases[] = {{-300, 255}, {254.5F, 254}, {255.5F, 255},
                                         {-2.5F, 2},  {-4e9F, 255},  {1e38F, 255}};
  for (const auto& [value, grey] : cases) {
    EXPECT_EQ(SampleCoefficients(Grid<float>(2, 3, value))(9, 200), grey) << value;
  }
}

TEST(Reduced, CountsPixelsOnABorderByThePartThatLiesInside) {
  Image image(1, 3, 30);
  image(0, 1) = 90;
  image(0, 2) = 240;
  EXPECT_EQ(Reduced(image, 1, 2)(0, 0), 50);   // 30 and half of 90
  EXPECT_EQ(Reduced(image, 1, 2)(0, 1), 190);  // half of 90 and 240
  EXPECT_TRUE(Reduced(image, 1, 3) == image);
}

TEST(Reduced, StaysFlatAndInsideAtEverySize) {
  const Image image(37, 101, 201);
  for (int rows = 1; rows <= 37; rows += 3) {
    for (int cols = 1; cols <= 101; ++cols)
      EXPECT_TRUE(Reduced(image, rows, cols) == Image(rows, cols, 201)) << rows << " x " << cols;
  }
}

TEST(ReducedToFit, KeepsTheShapeAndNeverEnlarges) {
  const auto sides = [](const Image& image) { return std::pair{image.Rows(), image.Cols()}; };
  EXPECT_EQ(sides(ReducedToFit(Image(300, 200), 100)), std::pair(100, 67));
  EXPECT_EQ(sides(ReducedToFit(Image(3, 2000), 50)), std::pair(1, 50));
  EXPECT_EQ(sides(ReducedToFit(Image(30, 20), 100)), std::pair(30, 20));
}

}  // namespace
}  // namespace marovia::test
