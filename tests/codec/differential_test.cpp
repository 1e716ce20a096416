// The library against the codec written plainly: the same bytes, reports and pictures, over seeded
// random images and settings.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <sstream>
#include <string>

#include "marovia/codec.h"

#include "tests/support/differences.h"
#include "tests/support/literal_coder.h"
#include "tests/support/test_images.h"

namespace marovia {
namespace {

using test::RandomBelow;

constexpr std::uint32_t kCombinations =
    6 * 3 * 2 * 2;  // kinds, wavelets, region or not, fit or not
constexpr double kBeyondEveryFile = 100;
constexpr std::size_t kShortestHeader = 10;

struct Case {
  Image image;
  literal::Settings settings;
  std::string label;
};

// A side of 4 to 70; for one that fits, a multiple of 2^levels.
int RandomSide(std::mt19937& random, bool fits, int levels) {
  const int side = 4 + RandomBelow(random, 67);
  const int unit = fits ? 1 << levels : 1;
  return std::clamp(side / unit * unit, std::max(unit, 4), 70);
}

double RandomRate(std::mt19937& random, int rows, int cols) {
  const double header = 136.0 / (rows * cols);
  const double rates[] = {1e-9, 0.5 * header, header, 1.1 * header, 0.25, 0.5,
                          1.0,  1.7,          3.0,    6.0,          20.0};
  return rates[RandomBelow(random, std::size(rates))];
}

Region RandomRegion(std::mt19937& random, int rows, int cols) {
  const int row = RandomBelow(random, rows);
  const int col = RandomBelow(random, cols);
  return {row, col, row + RandomBelow(random, rows - row), col + RandomBelow(random, cols - col)};
}

std::string Describe(std::uint32_t seed, const Case& made) {
  const literal::Settings& s = made.settings;
  std::ostringstream text;
  text << "seed " << seed << ": " << made.image.Rows() << " x " << made.image.Cols() << ", kind "
       << static_cast<int>(s.kind) << ", wavelet " << static_cast<int>(s.wavelet) << ", levels "
       << s.levels << ", rate " << s.rate;
  if (s.region) {
    text << ", region " << s.region->row1 << ',' << s.region->col1 << ',' << s.region->row2 << ','
         << s.region->col2 << ", share " << s.share;
  }
  return text.str();
}

// Every kCombinations seeds in a row go once through kinds, wavelets, region and fit.
Case MakeCase(std::uint32_t seed, std::mt19937& random) {
  Case made;
  literal::Settings& settings = made.settings;
  settings.kind = static_cast<FileKind>(seed % 6);
  settings.wavelet = static_cast<WaveletKind>(1 + seed / 6 % 3);
  settings.levels = 1 + RandomBelow(random, 6);
  const bool fits = seed / 36 % 2 == 0;
  const int rows = RandomSide(random, fits, settings.levels);
  const int cols = RandomSide(random, fits, settings.levels);
  settings.rate = RandomRate(random, rows, cols);
  if (seed / 18 % 2 == 1) {
    settings.region = RandomRegion(random, rows, cols);
    settings.share = static_cast<float>(RandomBelow(random, 120) - 10) / 100;
  }
  made.image = test::RandomImage(random, rows, cols);
  made.label = Describe(seed, made);
  return made;
}

// Calls check(case, random) for `rounds` times every combination, until one fails.
void ForCases(std::uint32_t rounds, auto check) {
  for (std::uint32_t seed = 0; seed < rounds * kCombinations; ++seed) {
    std::mt19937 random(seed);
    const Case made = MakeCase(seed, random);
    SCOPED_TRACE(made.label);
    check(made, random);
    if (testing::Test::HasFailure()) return;
  }
}

void ExpectSameDecoding(ByteView file, FileKind kind, double rate) {
  EXPECT_EQ(test::DecodingDifference(file, kind, rate), "")
      << "decoded at " << rate << " from " << file.size() << " bytes";
}

TEST(Differential, CompressionGivesTheSameFilesAndReports) {
  ForCases(30, [](const Case& made, std::mt19937&) {
    EXPECT_EQ(test::EncodingDifference(made.image, made.settings), "");
  });
}

TEST(Differential, DecodingGivesTheSamePicturesAtEveryRate) {
  ForCases(12, [](const Case& made, std::mt19937&) {
    const Bytes file = literal::Compress(made.image, made.settings).file;
    const double rate = made.settings.rate;
    for (const double part : {0.0, 0.07, 0.4, 0.93, 1.0}) {
      ExpectSameDecoding(file, made.settings.kind, part * rate);
      if (made.settings.kind == FileKind::kAwg) return;
    }
    ExpectSameDecoding(file, made.settings.kind, kBeyondEveryFile);
  });
}

TEST(Differential, CutFilesGiveTheSamePictures) {
  ForCases(12, [](const Case& made, std::mt19937& random) {
    const Bytes file = literal::Compress(made.image, made.settings).file;
    for (int cut = 0; cut < 3; ++cut) {
      const auto length =
          static_cast<std::size_t>(RandomBelow(random, static_cast<int>(file.size())));
      ExpectSameDecoding(ByteView(file).first(length), made.settings.kind, kBeyondEveryFile);
    }
    // Around the header's end the stream is shorter than what a decoder reads ahead.
    const auto length = kShortestHeader + static_cast<std::size_t>(RandomBelow(random, 7));
    ExpectSameDecoding(ByteView(file).first(std::min(length, file.size())), made.settings.kind,
                       kBeyondEveryFile);
  });
}

void FlipBit(Bytes& file, int at, std::mt19937& random) {
  file[static_cast<std::size_t>(at)] ^= static_cast<std::uint8_t>(1 << RandomBelow(random, 8));
}

TEST(Differential, DamagedStreamsGiveTheSamePicturesOrFailAlike) {
  ForCases(12, [](const Case& made, std::mt19937& random) {
    Bytes file = literal::Compress(made.image, made.settings).file;
    const int header = made.settings.kind == FileKind::kAwg ? 10 : 14;
    for (int flip = 0; flip < 4; ++flip) {
      FlipBit(file, header + RandomBelow(random, static_cast<int>(file.size()) - header), random);
      ExpectSameDecoding(file, made.settings.kind, kBeyondEveryFile);
    }
  });
}

TEST(Differential, DamagedHeadersGiveTheSamePicturesOrFailAlike) {
  ForCases(12, [](const Case& made, std::mt19937& random) {
    const Bytes file = literal::Compress(made.image, made.settings).file;
    const int budget = made.settings.kind == FileKind::kAwg ? 0 : 4;
    // Behind the budget: the levels, the lower bytes of the sides (the upper would ask for millions
    // of pixels), the mean, and the exponent.
    for (const int at : {0, 1, 3, 5, 6, 7, 8, 9}) {
      Bytes damaged = file;
      FlipBit(damaged, budget + at, random);
      ExpectSameDecoding(damaged, made.settings.kind, kBeyondEveryFile);
    }
  });
}

}  // namespace
}  // namespace marovia
