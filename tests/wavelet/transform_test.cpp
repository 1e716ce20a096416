// Images and coefficients against transforms written sample by sample.
#include "wavelet/transform.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "tests/support/code_of.h"
#include "tests/support/test_images.h"
#include "wavelet/catalogue.h"
#include "wavelet/scaling.h"

namespace marovia {
namespace {

using enum WaveletKind;
using test::CodeOf;
using test::RandomBelow;

constexpr WaveletKind kWavelets[] = {kDaub97, kInteger53, kInteger22};

// A line of samples, read in double precision and mirrored at both ends, stored in single.
class Line {
 public:
  explicit Line(std::size_t size) : samples(size) {}

  double operator[](int i) const {
    const int last = static_cast<int>(samples.size()) - 1;
    while (i < 0 || i > last) i = i < 0 ? -i : 2 * last - i;
    return samples[static_cast<std::size_t>(i)];
  }
  // Adds `change(i)` to every second sample, the even ones or the odd ones.
  void Add(int parity, auto change) {
    for (std::size_t i = static_cast<std::size_t>(parity); i < samples.size(); i += 2) {
      samples[i] = static_cast<float>((*this)[static_cast<int>(i)] + change(static_cast<int>(i)));
    }
  }
  void Weigh(int parity, double weight) {
    Add(parity, [&](int i) { return ((*this)[i - 1] + (*this)[i + 1]) * weight; });
  }
  // The integer wavelets' steps: from both neighbours, and for 2+2,2 from those at both sides.
  void Round(int parity, double weight) {
    Add(parity, [&](int i) { return std::nearbyint(((*this)[i - 1] + (*this)[i + 1]) * weight); });
  }
  void Curve(double sign) {
    Add(1, [&](int i) {
      const Line& x = *this;
      const double far = 2 * x[i + 1] - x[i - 1] - x[i + 3];
      const double near = 2 * x[i - 1] - x[i - 3] - x[i + 1];
      return sign * std::nearbyint(far / 16 + near / 16);
    });
  }
  void Scale(int parity, auto change) {
    for (auto i = static_cast<std::size_t>(parity); i < samples.size(); i += 2) {
      samples[i] = static_cast<float>(change(double{samples[i]}));
    }
  }

  std::vector<float> samples;
};

constexpr double kWeights[] = {-1.586134342F, -0.05298011854F, 0.8829111F, 0.44350687F};
constexpr double kK = 1.1496044F;

void Lift(Line& x, WaveletKind wavelet) {
  if (wavelet == kDaub97) {
    for (int step = 0; step < 4; ++step) x.Weigh(1 - step % 2, kWeights[step]);
    x.Scale(0, [](double value) { return value * kK; });
    x.Scale(1, [](double value) { return value / kK; });
    return;
  }
  x.Round(1, -0.5);
  x.Round(0, 0.25);
  if (wavelet == kInteger22) x.Curve(-1);
}

void Unlift(Line& x, WaveletKind wavelet) {
  if (wavelet == kDaub97) {
    x.Scale(0, [](double value) { return value / kK; });
    x.Scale(1, [](double value) { return value * kK; });
    for (int step = 3; step >= 0; --step) x.Weigh(1 - step % 2, -kWeights[step]);
    return;
  }
  if (wavelet == kInteger22) x.Curve(1);
  x.Round(0, -0.25);
  x.Round(1, 0.5);
}

// Lifts `n` samples at(0), at(1), ... between interleaved and band order. With an odd length the
// inverse reads the low samples where they are not: part of the file format.
void LiftInPlace(int n, WaveletKind wavelet, Direction direction, auto at) {
  const bool forward = direction == Direction::kForward;
  const int half = n / 2;
  Line line(static_cast<std::size_t>(n));
  const auto place = [&](int i) {
    if (i % 2 == 1) return half + i / 2;
    return n % 2 == 1 && (!forward || i == n - 1) ? i : i / 2;
  };
  for (int i = 0; i < n; ++i) {
    line.samples[static_cast<std::size_t>(i)] = at(forward ? i : place(i));
  }
  if (n > 1) forward ? Lift(line, wavelet) : Unlift(line, wavelet);
  for (int i = 0; i < n; ++i) {
    at(forward ? place(i) : i) = line.samples[static_cast<std::size_t>(i)];
  }
}

void LiftRows(Grid<float>& grid, int rows, int cols, WaveletKind wavelet, Direction direction) {
  for (int r = 0; r < rows; ++r) {
    LiftInPlace(cols, wavelet, direction, [&](int c) -> float& { return grid(r, c); });
  }
}

void LiftCols(Grid<float>& grid, int rows, int cols, WaveletKind wavelet, Direction direction) {
  for (int c = 0; c < cols; ++c) {
    LiftInPlace(rows, wavelet, direction, [&](int r) -> float& { return grid(r, c); });
  }
}

Grid<float> PlainTransform(const Image& image, WaveletKind wavelet, int levels) {
  Grid<float> grid(image.Rows(), image.Cols());
  std::copy(image.Samples().begin(), image.Samples().end(), grid.Samples().begin());
  for (int level = 0; level < levels; ++level) {
    LiftRows(grid, grid.Rows() >> level, grid.Cols() >> level, wavelet, Direction::kForward);
    LiftCols(grid, grid.Rows() >> level, grid.Cols() >> level, wavelet, Direction::kForward);
  }
  if (IsInteger(wavelet)) ScalingOfWT(grid, levels, Direction::kForward);
  return grid;
}

Image PlainInverse(Grid<float> grid, WaveletKind wavelet, int levels) {
  if (IsInteger(wavelet)) ScalingOfWT(grid, levels, Direction::kInverse);
  for (int level = levels - 1; level >= 0; --level) {
    LiftCols(grid, grid.Rows() >> level, grid.Cols() >> level, wavelet, Direction::kInverse);
    LiftRows(grid, grid.Rows() >> level, grid.Cols() >> level, wavelet, Direction::kInverse);
  }
  Image image(grid.Rows(), grid.Cols());
  ToPixels(grid.Samples(), image.Samples());
  return image;
}

// As a lossy decoder leaves them.
Grid<float> RandomCoefficients(std::mt19937& random, const Image& shape) {
  Grid<float> grid(shape.Rows(), shape.Cols());
  for (float& value : grid.Samples()) {
    value = static_cast<float>(RandomBelow(random, 7681) - 3840) / 64;
  }
  return grid;
}

TEST(Transform, IsThatOfSingleSamplesBothWaysAtEverySize) {
  std::mt19937 random(2);
  for (int rows = 3; rows <= 40; ++rows) {
    const Image image = test::RandomImage(random, rows, rows % 2 == 0 ? 3 + rows : 50 - rows);
    for (const WaveletKind wavelet : kWavelets) {
      for (int levels = 0; levels <= LevelLimit(rows, image.Cols(), wavelet); ++levels) {
        SCOPED_TRACE(testing::Message() << rows << " x " << image.Cols() << ", wavelet "
                                        << static_cast<int>(wavelet) << ", " << levels);
        Grid<float> coefficients = TransformTheImage(image, wavelet, levels);
        ASSERT_EQ(coefficients, PlainTransform(image, wavelet, levels));
        const int odd = (rows | image.Cols()) & ((1 << levels) - 1);
        const Image back = InvertTheTransformQuant(coefficients, wavelet, levels);
        ASSERT_TRUE(back == image || odd != 0 || wavelet == kDaub97);
        coefficients = RandomCoefficients(random, image);
        const Image expected = PlainInverse(coefficients, wavelet, levels);
        ASSERT_EQ(InvertTheTransformQuant(coefficients, wavelet, levels), expected);
      }
    }
  }
}

// Coefficients of 22 bits are exact in single precision, but not all that they grow to over four
// levels. Hardly ever does that show: in these, a pixel would be off by one.
TEST(Transform, KeepsToDoublePrecisionWhereValuesGrowBeyondSingle) {
  constexpr int kMost = 4095;
  constexpr int kGrain = 1024;
  const std::pair<WaveletKind, std::uint32_t> cases[] = {
      {kInteger53, 136}, {kInteger53, 231}, {kInteger22, 131}, {kInteger22, 6}};
  for (const auto& [wavelet, seed] : cases) {
    std::mt19937 random(seed);
    Grid<float> coefficients(64, 64);
    for (float& value : coefficients.Samples()) {
      const int offset = RandomBelow(random, 2 * kMost * kGrain + 1) - kMost * kGrain;
      const int multiple = kMost * kGrain - std::abs(offset) / 8;
      value = static_cast<float>(offset < 0 ? -multiple : multiple) / kGrain;
    }
    ScalingOfWT(coefficients, 4, Direction::kForward);
    const Image expected = PlainInverse(coefficients, wavelet, 4);
    EXPECT_EQ(InvertTheTransformQuant(coefficients, wavelet, 4), expected) << seed;
  }
}

// Two neighbours whose sum is a hair above a half has one bit too many for single precision.
TEST(Transform, RoundsHalvesExactlyInTheInverse) {
  Grid<float> coefficients(2, 4);
  const float neighbours[] = {16384.5F, 8193.5F + 1.0F / 1024};  // 24578 and a hair, of four
  coefficients(0, 1) = 4 * (6144 + 100);
  for (int i = 0; i < 2; ++i) coefficients(0, 2 + i) = 2 * neighbours[i];
  EXPECT_EQ(InvertTheTransformQuant(coefficients, kInteger53, 1)(0, 2), 99);
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
  ScalingOfWT(ones, 3, Direction::kInverse);
  EXPECT_EQ(ones, Grid<float>(75, 32, 1));
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
  for (const WaveletKind wavelet : kWavelets) {
    Grid<float> coefficients(16, 16);
    AddAverage(coefficients, 2, 1e30F);
    EXPECT_EQ(CodeOf([&] { InvertTheTransformQuant(coefficients, wavelet, 2); }), Errc::kOverflow);
  }
}

}  // namespace
}  // namespace marovia
