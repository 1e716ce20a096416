// The library against the codec written plainly: the same bytes, reports and pictures, over seeded
// random images and settings.
#include "tests/support/plain_codec.h"

namespace marovia {
namespace {

using test::DecodingDifference;
using test::RandomBelow;

struct SeededCase {
  Image image;
  CompressOptions options;
};

// Two places of a line of `side`, in order.
std::pair<int, int> RandomSpan(std::mt19937& random, int side) {
  const int first = RandomBelow(random, side);
  return {first, first + RandomBelow(random, side - first)};
}

void ChooseSizes(SeededCase& made, std::mt19937& random, bool fits) {
  const int unit = fits ? 1 << *made.options.levels : 1;
  const auto side = [&] {
    return std::clamp((4 + RandomBelow(random, 67)) / unit * unit, std::max(unit, 4), 70);
  };
  const int rows = side();
  made.image = test::RandomImage(random, rows, side());
  const double header = 136.0 / static_cast<double>(made.image.Size());
  const double rates[] = {1e-9, 0.5 * header, header, 1.1 * header, 0.25, 0.5,
                          1.0,  1.7,          3.0,    6.0,          20.0};
  made.options.rate = rates[RandomBelow(random, static_cast<int>(std::size(rates)))];
}

// Calls check(case, random) `rounds` times for every kind and wavelet, with and without a region,
// for sides that are multiples of 2^levels and others, until one fails.
void ForCases(int rounds, auto check) {
  const auto kinds = plain::Kinds();
  const int combinations = 12 * static_cast<int>(kinds.size());
  for (int seed = 0; seed < rounds * combinations; ++seed) {
    std::mt19937 random(static_cast<std::uint32_t>(seed));
    SeededCase made;
    CompressOptions& options = made.options;
    options.kind = kinds[static_cast<std::size_t>(seed) / 12 % kinds.size()];
    options.wavelet = static_cast<WaveletKind>(1 + seed % 3);
    options.levels = 1 + RandomBelow(random, 6);
    // Lossless with the 9/7 wavelet is only for those who know what they do.
    const bool mayPad = options.kind != FileKind::kAwg || options.wavelet != WaveletKind::kDaub97;
    options.pad = mayPad && RandomBelow(random, 2) == 0;
    ChooseSizes(made, random, seed / 3 % 2 == 0);
    if (seed / 6 % 2 == 0) {
      const auto [row1, row2] = RandomSpan(random, made.image.Rows());
      const auto [col1, col2] = RandomSpan(random, made.image.Cols());
      options.region = Region{row1, col1, row2, col2};
      options.share = static_cast<float>(RandomBelow(random, 120) - 10) / 100;
    }
    SCOPED_TRACE(testing::Message() << "seed " << seed << ", " << Extension(options.kind));
    check(made, random);
    if (testing::Test::HasFailure()) return;
  }
}

// The same with the file that the library makes of it.
void ForFiles(int rounds, auto check) {
  ForCases(rounds, [&](const SeededCase& made, std::mt19937& random) {
    check(Compress(made.image, made.options).file, made, random);
  });
}

TEST(Differential, CompressionGivesTheSameFilesAndReports) {
  ForCases(30, [](const SeededCase& made, std::mt19937&) {
    EXPECT_EQ(test::EncodingDifference(made.image, made.options), "");
  });
}

TEST(Differential, DecodingGivesTheSamePicturesAtEveryRate) {
  ForFiles(12, [](const Bytes& file, const SeededCase& made, std::mt19937&) {
    const FileKind kind = made.options.kind;
    EXPECT_EQ(DecodingDifference(file, kind), "");
    if (kind == FileKind::kAwg) return;
    for (const double part : {0.0, 0.07, 0.4, 0.93, 1.0, 2.0}) {
      const auto bits = static_cast<int>(part * made.options.rate * made.image.Cols());
      EXPECT_EQ(DecodingDifference(file, kind, bits), "") << bits << " bits a row";
    }
  });
}

void ExpectSameOf(ByteView file, FileKind kind) {
  EXPECT_EQ(DecodingDifference(file, kind), "") << file.size() << " bytes";
}

TEST(Differential, CutFilesGiveTheSamePictures) {
  ForFiles(12, [](const Bytes& file, const SeededCase& made, std::mt19937& random) {
    const auto size = static_cast<int>(file.size());
    // Around the header's end the stream is shorter than what a decoder reads ahead.
    const int aroundHeader = std::min(size, 10 + RandomBelow(random, 7));
    for (const int length : {aroundHeader, RandomBelow(random, size), RandomBelow(random, size)}) {
      ExpectSameOf(ByteView(file).first(static_cast<std::size_t>(length)), made.options.kind);
    }
  });
}

// Every byte of the header but the budget and the upper bytes of the sides, which would ask for
// millions of pixels; and more and more of the stream.
TEST(Differential, DamagedFilesGiveTheSamePicturesOrFailAlike) {
  ForFiles(12, [](Bytes file, const SeededCase& made, std::mt19937& random) {
    const auto flipped = [&](Bytes damaged, std::size_t at) {
      damaged[at] ^= static_cast<std::uint8_t>(1 << RandomBelow(random, 8));
      ExpectSameOf(damaged, made.options.kind);
      return damaged;
    };
    const std::size_t levels = made.options.kind == FileKind::kAwg ? 0 : 4;
    for (const std::size_t at : {0U, 1U, 3U, 5U, 6U, 7U, 8U, 9U}) flipped(file, levels + at);
    const auto stream = static_cast<int>(file.size() - levels - 10);
    for (int i = 0; i < 4; ++i) {
      const auto at = static_cast<std::size_t>(RandomBelow(random, stream));
      file = flipped(file, levels + 10 + at);
    }
  });
}

}  // namespace
}  // namespace marovia
