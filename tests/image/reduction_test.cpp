#include "image/reduction.h"

#include <gtest/gtest.h>
#include <numeric>

namespace marovia {
namespace {

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
}  // namespace marovia
