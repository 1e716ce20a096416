// Images and coefficients against the procedures written sample by sample.
#include "wavelet/transform.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <vector>

#include "tests/support/code_of.h"
#include "tests/support/literal_transform.h"
#include "tests/support/test_images.h"
#include "wavelet/catalogue.h"
#include "wavelet/scaling.h"

namespace marovia {
namespace {

using enum WaveletKind;
using test::CodeOf;

struct Shape {
  int rows, cols;
};
constexpr Shape kShapes[] = {{16, 16}, {64, 32}, {48, 80}, {8, 200}, {130, 6},  {3, 3},
                             {5, 9},   {6, 7},   {75, 75}, {33, 47}, {23, 101}, {97, 12}};

// Calls check(image, wavelet, levels) for shapes that halve evenly and shapes that do not.
void ForImages(auto check) {
  std::mt19937 random(2);
  for (const Shape& shape : kShapes) {
    const Image image = test::RandomImage(random, shape.rows, shape.cols);
    for (const WaveletKind wavelet : {kDaub97, kInteger53, kInteger22}) {
      for (int levels = 0; levels <= LevelLimit(shape.rows, shape.cols, wavelet); ++levels) {
        SCOPED_TRACE(testing::Message()
                     << shape.rows << " x " << shape.cols << ", wavelet "
                     << static_cast<int>(wavelet) << ", " << levels << " levels");
        check(image, wavelet, levels);
        if (testing::Test::HasFailure()) return;
      }
    }
  }
}

// Coefficients as a decoder leaves them: mostly 0, the others with fractions.
Grid<float> RandomCoefficients(std::mt19937& random, const Image& image) {
  Grid<float> grid(image.Rows(), image.Cols());
  for (float& value : grid.Samples()) {
    if (test::RandomBelow(random, 4) != 0) continue;
    value = static_cast<float>(test::RandomBelow(random, 20001) - 10000) / 64;
  }
  return grid;
}

TEST(Transform, GivesTheCoefficientsOfThePlainProcedure) {
  ForImages([](const Image& image, WaveletKind wavelet, int levels) {
    EXPECT_TRUE(TransformTheImage(image, wavelet, levels) ==
                literal::TransformTheImage(image, wavelet, levels));
  });
}

TEST(Transform, InvertsAnyCoefficientsAsThePlainProcedureDoes) {
  std::mt19937 random(3);
  ForImages([&](const Image& image, WaveletKind wavelet, int levels) {
    Grid<float> coefficients = RandomCoefficients(random, image);
    const Image expected = literal::InvertTheTransformQuant(coefficients, wavelet, levels);
    EXPECT_TRUE(InvertTheTransformQuant(coefficients, wavelet, levels) == expected);
  });
}

TEST(Transform, OfIntegersIsUndoneExactlyWhereEverySideHalvesEvenly) {
  ForImages([](const Image& image, WaveletKind wavelet, int levels) {
    const int odd = (image.Rows() | image.Cols()) & ((1 << levels) - 1);
    if (wavelet == kDaub97 || odd != 0) return;
    Grid<float> coefficients = TransformTheImage(image, wavelet, levels);
    EXPECT_TRUE(InvertTheTransformQuant(coefficients, wavelet, levels) == image);
  });
}

TEST(Scaling, MultipliesEachBandByAPowerOfTwoOfItsLevel) {
  Grid<float> ones(75, 32, 1);
  ScalingOfWT(ones, 3, Direction::kForward);
  const struct {
    int row, col;
    float factor;
  } cases[] = {{74, 31, 2}, {0, 16, 2}, {38, 0, 2}, {37, 0, 4}, {37, 15, 4},
               {19, 0, 4},  {18, 7, 8}, {0, 4, 8},  {9, 3, 16}, {0, 0, 16}};
  for (const auto& c : cases) EXPECT_EQ(ones(c.row, c.col), c.factor) << c.row << ", " << c.col;
  Grid<float> expected(75, 32, 1);
  ScalingOfWT(ones, 3, Direction::kInverse);
  EXPECT_TRUE(ones == expected);
}

TEST(Average, IsThatOfThePlainProcedureAndComesBack) {
  ForImages([](const Image& image, WaveletKind wavelet, int levels) {
    Grid<float> coefficients = TransformTheImage(image, wavelet, levels);
    Grid<float> expected = coefficients;
    const float mean = SubtractAverage(coefficients, wavelet, levels);
    EXPECT_EQ(mean, literal::SubtractAverage(expected, wavelet, levels));
    EXPECT_TRUE(wavelet == kDaub97 || mean == std::nearbyint(mean)) << mean;
    EXPECT_TRUE(coefficients == expected);
    AddAverage(coefficients, levels, mean);
    literal::AddAverage(expected, levels, mean);
    EXPECT_TRUE(coefficients == expected);
  });
}

TEST(Average, OfAnIntegerWaveletIsRoundedToTheEvenNumber) {
  Grid<float> coefficients(1, 2);
  coefficients(0, 1) = 5;
  EXPECT_EQ(SubtractAverage(coefficients, kInteger53, 0), 2);
  EXPECT_EQ(coefficients(0, 0), -2);
}

TEST(Pixels, AreRoundedMagnitudesHeldTo255) {
  const std::vector<float> values = {-3.4F, 255.6F, 2.5F, 3.5F, -0.5F, -300, 254.5F, 32767, -32767};
  const std::vector<std::uint8_t> expected = {3, 255, 2, 4, 0, 255, 254, 255, 255};
  std::vector<std::uint8_t> pixels(values.size());
  ToPixels(values, pixels);
  EXPECT_EQ(pixels, expected);
  for (const float value : {32768.0F, -32768.0F, 1e20F, NAN}) {
    EXPECT_EQ(CodeOf([&] { ToPixels({&value, 1}, pixels); }), Errc::kOverflow) << value;
  }
}

TEST(Transform, FailsOnAMeanThatNoPixelCanHave) {
  for (const WaveletKind wavelet : {kDaub97, kInteger53, kInteger22}) {
    Grid<float> coefficients(16, 16);
    AddAverage(coefficients, 2, 1e30F);
    EXPECT_EQ(CodeOf([&] { InvertTheTransformQuant(coefficients, wavelet, 2); }), Errc::kOverflow);
  }
}

}  // namespace
}  // namespace marovia
