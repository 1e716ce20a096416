// The engine, with either set of loops, against the codec written plainly: the same files, and the
// same pictures of whole, cut and damaged ones.
#include <cstdlib>

#include "context/kernels.h"
#include "tests/support/plain_context.h"
#include "tests/support/testing.h"

namespace marovia {
namespace {

using test::RandomBelow;

struct Case {
  Image image;
  ContextOptions options;
};

// Sides from 1 on, more often small; the sides of blocks and groups lie among them.
int RandomSide(std::mt19937& random) {
  const int most[] = {4, 20, 70, 140};
  return 1 + RandomBelow(random, most[RandomBelow(random, 4)]);
}

Region RandomRegion(std::mt19937& random, const Image& image) {
  const int row = RandomBelow(random, image.Rows());
  const int col = RandomBelow(random, image.Cols());
  return {row, col, row + RandomBelow(random, image.Rows() - row),
          col + RandomBelow(random, image.Cols() - col)};
}

Case MakeCase(std::uint32_t seed, std::mt19937& random) {
  Case made;
  const int rows = RandomSide(random);
  made.image = test::RandomImage(random, rows, RandomSide(random));
  made.options.wavelet = static_cast<WaveletKind>(1 + seed % 3);
  made.options.levels = RandomBelow(random, 9);
  if (seed % 2 == 0) made.options.bytes = 16 + RandomBelow(random, 2 + rows * 20);
  if (seed % 4 == 0) {
    made.options.region = RandomRegion(random, made.image);
    made.options.share = static_cast<float>(RandomBelow(random, 101)) / 100;
  }
  return made;
}

// How many times as many cases as in an ordinary run: a campaign's, by MAROVIA_ROUNDS.
std::uint32_t Rounds() {
  const char* const rounds = std::getenv("MAROVIA_ROUNDS");
  return rounds == nullptr ? 1 : static_cast<std::uint32_t>(std::stoul(rounds));
}

// Calls check(case, random) for so many seeds, until one fails.
void ForCases(std::uint32_t count, auto check) {
  for (std::uint32_t seed = 0; seed < count * Rounds(); ++seed) {
    std::mt19937 random(seed);
    const Case made = MakeCase(seed, random);
    SCOPED_TRACE("seed " + std::to_string(seed) + ": " + std::to_string(made.image.Rows()) + " x " +
                 std::to_string(made.image.Cols()));
    check(made, random);
    if (testing::Test::HasFailure()) return;
  }
}

void ExpectSameDecoding(ByteView file) {
  SCOPED_TRACE(std::to_string(file.size()) + " bytes");
  const ContextPicture expected = plain::DecodeContext(file);
  for (const ContextKernels* kernels : {&PlainKernels(), &BestKernels()}) {
    const ContextPicture picture = DecodeContextWith(*kernels, file, {});
    EXPECT_EQ(picture.complete, expected.complete);
    EXPECT_TRUE(picture.image == expected.image);
  }
}

TEST(ContextDifferential, FilesAreTheSameAndDecodeAlike) {
  ForCases(360, [](const Case& made, std::mt19937&) {
    const Bytes expected = plain::EncodeContext(made.image, made.options);
    for (const ContextKernels* kernels : {&PlainKernels(), &BestKernels()}) {
      EXPECT_EQ(EncodeContextWith(*kernels, made.image, made.options), expected);
    }
    ExpectSameDecoding(expected);
    if (made.options.bytes == 0 && made.options.wavelet != WaveletKind::kDaub97) {
      const ContextPicture back = DecodeContext(expected);
      EXPECT_TRUE(back.complete && back.image == made.image);
    }
  });
}

TEST(ContextDifferential, EveryBeginningOfAFileDecodesAlike) {
  ForCases(24, [](const Case& made, std::mt19937&) {
    const Bytes file = EncodeContext(made.image, made.options);
    const std::size_t step = file.size() < 1000 ? 1 : file.size() / 150;
    for (std::size_t size = kContextHeaderBytes; size < file.size(); size += step) {
      ExpectSameDecoding(ByteView(file).first(size));
    }
  });
}

TEST(ContextDifferential, DamagedFilesDecodeAlike) {
  ForCases(120, [](const Case& made, std::mt19937& random) {
    Bytes file = EncodeContext(made.image, made.options);
    for (int flip = 0; flip < 3; ++flip) {
      const auto at = static_cast<std::size_t>(RandomBelow(random, static_cast<int>(file.size())));
      if (at < kContextHeaderBytes) continue;
      file[at] ^= static_cast<std::uint8_t>(1 << RandomBelow(random, 8));
      ExpectSameDecoding(file);
    }
    // Any number of planes and any mean make a picture.
    file[7] = static_cast<std::uint8_t>(RandomBelow(random, kMostContextPlanes + 1));
    file[14] = static_cast<std::uint8_t>(random());
    ExpectSameDecoding(file);
  });
}

// Certain ones and zeros throughout, and a code beyond the interval: what no writer makes.
TEST(ContextDifferential, StreamsThatNoWriterMakesDecodeAlike) {
  ForCases(40, [](const Case& made, std::mt19937& random) {
    Bytes file = EncodeContext(made.image, {.wavelet = made.options.wavelet, .bytes = 16});
    file[7] = static_cast<std::uint8_t>(RandomBelow(random, kMostContextPlanes + 1));
    const std::uint8_t fills[] = {0x00, 0xFF, 0x55, static_cast<std::uint8_t>(random())};
    file.resize(16 + static_cast<std::size_t>(RandomBelow(random, 300)),
                fills[RandomBelow(random, 4)]);
    ExpectSameDecoding(file);
  });
}

}  // namespace
}  // namespace marovia
