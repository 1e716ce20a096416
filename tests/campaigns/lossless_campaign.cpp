// Codes seeded images without loss and decodes them: every one must come back bit for bit.
//
//   lossless_campaign COUNT FIRST_SEED
//
// Seed after seed alternates between the integer wavelets, every eight seeds between the kinds that
// can be lossless, and goes through 1 to 4 levels (fewer
// where a side bears fewer). Prints one line; exit status 1 names the first seed that failed.
#include <cstdint>
#include <cstdio>
#include <random>
#include <span>

#include "marovia/codec.h"

#include "tests/campaigns/count_and_first.h"
#include "tests/support/test_images.h"

namespace marovia {
namespace {

using test::RandomBelow;

// Rectangles of black and white, some on the borders.
Image HardEdges(std::mt19937& random, int rows, int cols) {
  Image image(rows, cols, RandomBelow(random, 2) == 0 ? 0 : 255);
  for (int i = 0; i < 12; ++i) {
    const int top = RandomBelow(random, rows);
    const int left = RandomBelow(random, cols);
    const int bottom = top + 1 + RandomBelow(random, rows - top);
    const int right = left + 1 + RandomBelow(random, cols - left);
    for (int r = top; r < bottom; ++r) {
      for (int c = left; c < right; ++c) image(r, c) = i % 2 == 0 ? 255 : 0;
    }
  }
  return image;
}

// A structured image of which parts are flat.
Image FlatRegions(std::mt19937& random, int rows, int cols) {
  Image image = test::RandomImage(random, rows, cols);
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < cols; ++c) {
      if ((r / 32 + c / 48) % 2 == 0) image(r, c) = 77;
    }
  }
  return image;
}

Image MakeImage(std::mt19937& random) {
  const int rows = 3 + RandomBelow(random, 254);
  const int cols = 3 + RandomBelow(random, 254);
  switch (RandomBelow(random, 4)) {
    case 0:
      return HardEdges(random, rows, cols);
    case 1:
      return FlatRegions(random, rows, cols);
    default:
      return test::RandomImage(random, rows, cols);
  }
}

struct Totals {
  std::int64_t pixels = 0;
  std::int64_t bytes = 0;
};

bool ComesBack(std::uint32_t seed, Totals& totals) {
  std::mt19937 random(seed);
  const Image image = MakeImage(random);
  CompressOptions options;
  options.kind = seed / 8 % 2 == 0 ? FileKind::kAwg : FileKind::kAwh;
  options.lossless = true;
  options.wavelet = seed % 2 == 0 ? WaveletKind::kInteger53 : WaveletKind::kInteger22;
  options.levels = 1 + static_cast<int>(seed / 2 % 4);
  const Bytes file = Compress(image, options).file;
  const DecompressResult back = Decompress(file, options.kind);
  totals.pixels += image.Rows() * image.Cols();
  totals.bytes += static_cast<std::int64_t>(file.size());
  return back.image == image && !back.truncated;
}

int Run(std::span<char*> arguments) {
  const auto given = test::ParseCountAndFirst(arguments);
  if (!given) {
    std::fputs("usage: lossless_campaign COUNT FIRST_SEED\n", stderr);
    return 2;
  }
  const auto [count, first] = *given;
  Totals totals;
  for (std::uint32_t seed = first; seed - first < count; ++seed) {
    if (ComesBack(seed, totals)) continue;
    std::printf("seed %u does not come back\n", seed);
    return 1;
  }
  const double bitsPerPixel =
      8.0 * static_cast<double>(totals.bytes) / static_cast<double>(totals.pixels);
  std::printf("%u images (seeds %u to %u), %lld pixels, %.3f bits per pixel: all come back\n",
              count, first, first + count - 1, static_cast<long long>(totals.pixels), bitsPerPixel);
  return 0;
}

}  // namespace
}  // namespace marovia

int main(int argc, char** argv) {
  return marovia::Run({argv, static_cast<std::size_t>(argc)});
}
