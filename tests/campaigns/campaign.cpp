// Long runs over seeded or damaged inputs, of which the tests make short ones.
//
//   campaign lossless COUNT FIRST       codes seeded images without loss; every one must come back
//   campaign damage IMAGE EXTENSION STRIDE FLIPS
//                                       decodes every STRIDE-th length of the image's file, and
//                                       FLIPS files with one to four bits flipped: a whole picture
//                                       comes out, or Error
//   campaign digest COUNT FIRST [small] a digest of each of COUNT batches, of the files of every
//                                       kind and wavelet, their pictures, and the coefficients of
//                                       the floating-point wavelet; the same on every machine
//   campaign images COUNT FOLDER        writes seeded images, FOLDER/00000.pgm and on
#include <bit>
#include <cstdio>

#include "tests/support/testing.h"
#include "wavelet/catalogue.h"
#include "wavelet/transform.h"

namespace marovia {
namespace {

using enum WaveletKind;
using test::RandomBelow;
using Words = std::vector<std::string>;

void Require(bool holds, const std::string& what) {
  if (!holds) throw std::runtime_error(what);
}

Image ReadFrom(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  return ReadImage(Bytes(std::istreambuf_iterator<char>(stream), {})).image;
}

void Lossless(const Words& words) {
  const unsigned long first = std::stoul(words.at(1));
  const unsigned long count = std::stoul(words.at(0));
  std::size_t pixels = 0;
  std::size_t bytes = 0;
  for (unsigned long seed = first; seed < first + count; ++seed) {
    std::mt19937 random(static_cast<std::uint32_t>(seed));
    const int rows = 3 + RandomBelow(random, 254);
    const Image image = test::RandomImage(random, rows, 3 + RandomBelow(random, 254));
    CompressOptions options{seed / 8 % 2 == 0 ? FileKind::kAwg : FileKind::kAwh,
                            seed % 2 == 0 ? kInteger53 : kInteger22,
                            1 + static_cast<int>(seed / 2 % 4)};
    options.lossless = true;
    const Bytes file = Compress(image, options).file;
    const DecompressResult back = Decompress(file, options.kind);
    Require(back.image == image && !back.truncated,
            "seed " + std::to_string(seed) + " does not come back");
    pixels += image.Size();
    bytes += file.size();
  }
  std::printf("%lu images (seeds %lu to %lu), %zu pixels, %.3f bits per pixel: all come back\n",
              count, first, first + count - 1, pixels,
              8 * static_cast<double>(bytes) / static_cast<double>(pixels));
}

// The picture; nothing where the file is refused. Any other exception goes through.
std::optional<Image> Try(ByteView file, FileKind kind) {
  try {
    const DecompressResult result = Decompress(file, kind);
    Require(result.image.Rows() == result.info.rows && result.image.Cols() == result.info.cols,
            "a picture has not the size that its file tells");
    return result.image;
  } catch (const Error&) {
    return std::nullopt;
  }
}

// The quality grows with the length, but for the last bits, which the next ones may complete.
std::size_t CutEverywhere(const Image& image, const CompressOptions& options, std::size_t stride) {
  const Bytes file = Compress(image, options).file;
  const std::size_t header = options.kind == FileKind::kAwg   ? 10
                             : options.kind == FileKind::kAwh ? 16
                                                              : 14;
  double best = 0;
  std::size_t lengths = 0;
  for (std::size_t length = 0; length <= file.size(); length += length < 80 ? 1 : stride) {
    const auto picture = Try(ByteView(file).first(length), options.kind);
    const std::string name = "the first " + std::to_string(length) + " bytes";
    Require(picture.has_value() == (length >= header), name + " are not treated as they must be");
    ++lengths;
    if (!picture || 100 * length < file.size()) continue;
    const double psnr = Measure(image, *picture).psnr.value_or(100);
    Require(psnr > best - 1, name + " are worse by a decibel than fewer");
    best = std::max(best, psnr);
  }
  return lengths;
}

std::size_t Decoded(const std::vector<Bytes>& files, FileKind kind) {
  std::size_t count = 0;
  for (const Bytes& file : files) count += Try(file, kind) ? 1 : 0;
  return count;
}

void Damage(const Words& words) {
  const Image image = ReadFrom(words.at(0));
  CompressOptions options{.kind = KindOfExtension(words.at(1)).value(), .rate = 0.25};
  const bool lossless = options.kind == FileKind::kAwg;
  if (lossless) options.wavelet = kInteger53;
  const std::size_t lengths = CutEverywhere(image, options, std::stoul(words.at(2)));

  std::mt19937 random(1);
  options.rate = 1.5;
  const Bytes small = Compress(test::NamedImage("blobs", 61, 64), options).file;
  std::vector<Bytes> flipped(std::stoul(words.at(3)), small);
  for (Bytes& file : flipped) {
    for (int bits = 1 + RandomBelow(random, 4); bits > 0; --bits) {
      const auto at = static_cast<std::size_t>(RandomBelow(random, static_cast<int>(file.size())));
      file[at] ^= static_cast<std::uint8_t>(1 << RandomBelow(random, 8));
    }
  }
  std::printf("%s: %zu lengths, and %zu of %zu with flipped bits decoded\n", words.at(1).c_str(),
              lengths, Decoded(flipped, options.kind), flipped.size());
}

// Words, not bytes, so that the order of bytes in memory does not matter.
class Hash {
 public:
  void Add(std::uint32_t word) { value_ = (value_ ^ word) * 0x100000001B3; }
  void Add(ByteView bytes) {
    for (const std::uint8_t byte : bytes) Add(byte);
  }
  [[nodiscard]] unsigned long long Value() const { return value_; }

 private:
  std::uint64_t value_ = 0xCBF29CE484222325;
};

// Every bit of the coefficients of the floating-point wavelet, and the pixels that come back from
// coarse ones, such as a decoder inverts at a low rate.
void AddTransform(Hash& hash, const Image& image) {
  Grid<float> coefficients = TransformTheImage(image, kDaub97, 4);
  for (float& value : coefficients.Samples()) {
    const auto bits = std::bit_cast<std::uint32_t>(value);
    hash.Add(bits);
    value = std::bit_cast<float>(bits & 0xFFF00000);  // sign, exponent and three bits
  }
  hash.Add(InvertTheTransformQuant(coefficients, kDaub97, 4).Samples());
}

void Digest(const Words& words) {
  const auto count = static_cast<std::uint32_t>(std::stoul(words.at(0)));
  const auto first = static_cast<std::uint32_t>(std::stoul(words.at(1)));
  for (std::uint32_t batch = first; batch - first < count; ++batch) {
    std::mt19937 random(batch);
    Hash hash;
    std::size_t samples = 0;
    const auto side = [&] { return 16 * (3 + RandomBelow(random, words.size() > 2 ? 2 : 21)); };
    for (const FileKind kind : AllKinds()) {
      for (const WaveletKind wavelet : kWaveletsAsListed) {
        if (kind == FileKind::kAwg && wavelet == kDaub97) continue;
        const int rows = side();
        const Image image = test::RandomImage(random, rows, side());
        const Bytes file = Compress(image, {.kind = kind, .wavelet = wavelet, .rate = 1}).file;
        hash.Add(file);
        hash.Add(Decompress(file, kind).image.Samples());
        AddTransform(hash, image);
        samples += image.Size();
      }
    }
    std::printf("batch %u: %zu samples, %016llx\n", batch, samples, hash.Value());
  }
}

void Images(const Words& words) {
  const auto count = static_cast<std::uint32_t>(std::stoul(words.at(0)));
  for (std::uint32_t i = 0; i < count; ++i) {
    std::mt19937 random(i);
    const int rows = 16 + RandomBelow(random, 240);
    const Bytes file = WritePgm(test::RandomImage(random, rows, 16 + RandomBelow(random, 240)));
    const std::string number = std::to_string(100000 + i).substr(1);
    std::ofstream stream(words.at(1) + "/" + number + ".pgm", std::ios::binary);
    stream.exceptions(std::ios::failbit | std::ios::badbit);
    for (const std::uint8_t byte : file) stream.put(static_cast<char>(byte));
  }
}

constexpr std::pair<std::string_view, void (*)(const Words&)> kCampaigns[] = {
    {"lossless", Lossless}, {"damage", Damage}, {"digest", Digest}, {"images", Images}};

}  // namespace
}  // namespace marovia

int main(int argc, char** argv) {
  const marovia::Words words(argv + 1, argv + argc);
  for (const auto& [name, run] : marovia::kCampaigns) {
    if (words.empty() || words.front() != name) continue;
    try {
      run({words.begin() + 1, words.end()});
      return 0;
    } catch (const std::exception& error) {
      std::fprintf(stderr, "campaign %s: %s\n", words.front().c_str(), error.what());
      return 1;
    }
  }
  std::fputs("usage: campaign lossless|damage|digest|images ...\n", stderr);
  return 2;
}
