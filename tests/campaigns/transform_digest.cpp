// Digests of what the floating-point wavelet makes of seeded images: every bit of the coefficients,
// the compressed file, and the pixels that come back from coarse coefficients. The same on every
// machine and compiler.
//
//   transform_digest COUNT FIRST_BATCH
//
// Prints one line for each of COUNT batches of at least a million samples.
#include <bit>
#include <cstdint>
#include <cstdio>
#include <random>
#include <span>

#include "marovia/codec.h"

#include "tests/campaigns/count_and_first.h"
#include "tests/support/test_images.h"
#include "wavelet/transform.h"

namespace marovia {
namespace {

constexpr int kLevels = 5;
constexpr int kStep = 1 << kLevels;  // sides are multiples of it
constexpr std::int64_t kSamplesOfABatch = 1'000'000;
// Sign, exponent and three bits: as coarse as what a decoder inverts at a low rate.
constexpr std::uint32_t kCoarse = 0xFFF00000;

// Words, not bytes, so that the order of bytes in memory does not matter.
class Digest {
 public:
  void Add(std::uint32_t word) { value_ = (value_ ^ word) * kPrime; }
  [[nodiscard]] std::uint64_t Value() const { return value_; }

 private:
  static constexpr std::uint64_t kPrime = 0x100000001B3;
  std::uint64_t value_ = 0xCBF29CE484222325;
};

int RandomSide(std::mt19937& random) {
  return kStep * (4 + test::RandomBelow(random, 21));
}

void AddImage(const Image& image, Digest& digest) {
  for (const std::uint8_t byte : Compress(image, {.levels = kLevels}).file) digest.Add(byte);
  Grid<float> coefficients = TransformTheImage(image, WaveletKind::kDaub97, kLevels);
  for (float& value : coefficients.Samples()) {
    const auto bits = std::bit_cast<std::uint32_t>(value);
    digest.Add(bits);
    value = std::bit_cast<float>(bits & kCoarse);
  }
  const Image back = InvertTheTransformQuant(coefficients, WaveletKind::kDaub97, kLevels);
  for (const std::uint8_t pixel : back.Samples()) digest.Add(pixel);
}

void PrintBatch(std::uint32_t batch) {
  std::mt19937 random(batch);
  Digest digest;
  std::int64_t samples = 0;
  while (samples < kSamplesOfABatch) {
    const int rows = RandomSide(random);
    const Image image = test::RandomImage(random, rows, RandomSide(random));
    AddImage(image, digest);
    samples += static_cast<std::int64_t>(image.Size());
  }
  std::printf("batch %u: %lld samples, %016llx\n", batch, static_cast<long long>(samples),
              static_cast<unsigned long long>(digest.Value()));
}

int Run(std::span<char*> arguments) {
  const auto given = test::ParseCountAndFirst(arguments);
  if (!given) {
    std::fputs("usage: transform_digest COUNT FIRST_BATCH\n", stderr);
    return 2;
  }
  const auto [count, first] = *given;
  for (std::uint32_t batch = first; batch - first < count; ++batch) PrintBatch(batch);
  return 0;
}

}  // namespace
}  // namespace marovia

int main(int argc, char** argv) {
  return marovia::Run({argv, static_cast<std::size_t>(argc)});
}
