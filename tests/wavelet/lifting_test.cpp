// Lines against the procedures written sample by sample.
#include "wavelet/lifting.h"

#include <cmath>
#include <cstddef>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "tests/support/literal_transform.h"
#include "tests/support/test_images.h"

namespace marovia {
namespace {

using enum WaveletKind;
using Line = std::vector<float>;

constexpr WaveletKind kWavelets[] = {kDaub97, kInteger53, kInteger22};

// Whole numbers, or with `grain` above 1 fractions, as a lossy decoder leaves them.
Line RandomLine(std::mt19937& random, int length, int most, int grain) {
  Line line(static_cast<std::size_t>(length));
  for (float& sample : line) {
    const int numerator = test::RandomBelow(random, 2 * most * grain + 1) - most * grain;
    sample = static_cast<float>(numerator) / static_cast<float>(grain);
  }
  return line;
}

template <class Procedure, class... First>
Line Changed(Line line, Procedure procedure, First... first) {
  procedure(first..., std::span<float>(line));
  return line;
}

// Calls check(wavelet, line) on random lines of every length from `shortest` to 70.
void ForLines(int shortest, int grain, auto check) {
  std::mt19937 random(1);
  for (const WaveletKind wavelet : kWavelets) {
    for (int length = shortest; length <= 70; ++length) {
      for (const int most : {3, 255, 70000}) {
        SCOPED_TRACE(testing::Message() << "wavelet " << static_cast<int>(wavelet) << ", " << length
                                        << " samples up to " << most);
        check(wavelet, RandomLine(random, length, most, grain));
        if (testing::Test::HasFailure()) return;
      }
    }
  }
}

TEST(Lifting, GivesTheLinesOfThePlainProceduresBothWays) {
  for (const int grain : {1, 64}) {
    ForLines(2, grain, [](WaveletKind wavelet, const Line& line) {
      EXPECT_EQ(Changed(line, SymmWavTr2D, wavelet), Changed(line, literal::SymmWavTr2D, wavelet));
      EXPECT_EQ(Changed(line, InvSymmWavTr2D, wavelet),
                Changed(line, literal::InvSymmWavTr2D, wavelet));
    });
  }
}

TEST(Lifting, OfIntegersIsUndoneExactlyAndOfTheRealWaveletNearly) {
  ForLines(1, 1, [](WaveletKind wavelet, const Line& line) {
    const Line back = Changed(Changed(line, SymmWavTr2D, wavelet), InvSymmWavTr2D, wavelet);
    if (wavelet != kDaub97) {
      EXPECT_EQ(back, line);
    }
    for (std::size_t i = 0; i < line.size(); ++i) EXPECT_NEAR(back[i], line[i], 0.1);
  });
}

TEST(Lifting, LeavesNothingOfAConstantLineInTheHighBand) {
  for (const WaveletKind wavelet : kWavelets) {
    const Line line = Changed(Line(20, 200), SymmWavTr2D, wavelet);
    for (std::size_t i = 0; i < line.size(); ++i) {
      const double low = wavelet == kDaub97 ? 200 * std::sqrt(2.0) : 200;
      EXPECT_NEAR(line[i], i % 2 == 0 ? low : 0, wavelet == kDaub97 ? 1e-3 : 0);
    }
  }
}

TEST(Lifting, PredictsHalvesToTheEvenNumber) {
  EXPECT_EQ(Changed(Line{1, 0, 2, 0}, SymmWavTr2D, kInteger53)[1], -2);
  EXPECT_EQ(Changed(Line{2, 0, 3, 0}, SymmWavTr2D, kInteger53)[1], -2);
  EXPECT_EQ(Changed(Line{-1, 0, 0, 0}, SymmWavTr2D, kInteger53)[1], 0);
}

TEST(Perm, AndItsCounterpartMoveSamplesAsThePlainProceduresDo) {
  ForLines(1, 1, [](WaveletKind, const Line& line) {
    EXPECT_EQ(Changed(line, Perm), Changed(line, literal::Perm));
    EXPECT_EQ(Changed(line, INVPERM), Changed(line, literal::INVPERM));
    if (line.size() % 2 == 0) {
      EXPECT_EQ(Changed(Changed(line, Perm), INVPERM), line);
    }
  });
}

}  // namespace
}  // namespace marovia
