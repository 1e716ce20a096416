#include "fuzz/seeds.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "marovia/codec.h"

#include "fuzz/coding_request.h"
#include "tests/support/golden_table.h"
#include "tests/support/library_options.h"
#include "tests/support/test_images.h"

namespace marovia::fuzz {
namespace {

namespace fs = std::filesystem;

std::uint8_t Byte(auto value) {
  return static_cast<std::uint8_t>(value);
}

// A smaller image coded as the row says; whatever its size, its sides are padded where asked.
Bytes CodedFile(const test::GoldenRow& row, int mostSide, bool pad) {
  const Image image =
      test::NamedImage(row.image, std::min(row.rows, mostSide), std::min(row.cols, mostSide));
  CompressOptions options = test::UnpaddedOptions(row.settings, image);
  options.region = {};
  options.pad = pad;
  return Compress(image, options).file;
}

Bytes OfAKind(FileKind kind, int part, const Bytes& file) {
  Bytes input;
  input.reserve(2 + file.size());
  input.push_back(Byte(kind));
  input.push_back(Byte(part));
  input.insert(input.end(), file.begin(), file.end());
  return input;
}

// In the order of CodingRequest, on a small part of the row's image.
Bytes RequestOf(const test::GoldenRow& row, int side, unsigned flags) {
  const literal::Settings& settings = row.settings;
  if (settings.region) flags |= kRegion;
  const int rate = static_cast<int>(settings.rate * 1000);
  Bytes input{Byte(settings.kind),
              Byte(static_cast<int>(settings.wavelet) - 1),
              Byte(settings.levels + 1),
              Byte(flags),
              Byte(rate & 0xFF),
              Byte(rate >> 8),
              Byte(side - 1),
              Byte(side - 1)};
  for (const int corner : {2, 3, 7, 6}) input.push_back(Byte(corner));
  input.push_back(Byte(settings.share * 100 + 10));
  const Image image = test::NamedImage(row.image, side, side);
  input.insert(input.end(), image.Samples().begin(), image.Samples().end());
  return input;
}

void AddSeedsOf(const test::GoldenRow& row, std::vector<Seed>& seeds) {
  const FileKind kind = row.settings.kind;
  const std::string name = std::to_string(seeds.size());
  seeds.push_back({"decode", name, OfAKind(kind, 0, CodedFile(row, 32, false))});
  seeds.push_back({"decode", name + "_padded", OfAKind(kind, 12, CodedFile(row, 21, true))});
  seeds.push_back({"cut", name + "_rate", OfAKind(kind, 16, CodedFile(row, 24, false))});
  seeds.push_back({"cut", name + "_bytes", OfAKind(kind, 99, CodedFile(row, 19, true))});
  seeds.push_back({"round_trip", name, RequestOf(row, 12, 0)});
  seeds.push_back({"round_trip", name + "_padded", RequestOf(row, 15, kPad)});
  seeds.push_back({"decode_plainly", name, OfAKind(kind, 200, CodedFile(row, 16, false))});
  seeds.push_back({"encode_plainly", name, RequestOf(row, 12, 0)});
}

// Both ways to ask for such a file, and the targets that read one.
void AddContextSeeds(std::vector<Seed>& seeds) {
  for (const bool lossless : {false, true}) {
    CompressOptions options{.kind = FileKind::kAwh, .rate = 2, .lossless = lossless};
    const Bytes file = Compress(test::NamedImage("blobs", 15, 16), options).file;
    const std::string name = lossless ? "context_lossless" : "context";
    for (const char* target : {"decode", "cut", "decode_plainly"})
      seeds.push_back({target, name, OfAKind(options.kind, 0, file)});
    // Corners, share and samples are as good as any.
    Bytes request{Byte(options.kind),
                  Byte(lossless),
                  0,
                  Byte(lossless ? kLossless + 0U : 0U),
                  0xD0,
                  7,
                  14,
                  15};
    request.insert(request.end(), file.begin(), file.end());
    for (const char* target : {"round_trip", "encode_plainly"})
      seeds.push_back({target, name, request});
  }
}

Bytes FileBytes(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

std::vector<Seed> MakeSeeds(const std::string& dataFolder) {
  std::vector<Seed> seeds;
  for (const auto& row : test::ReadGoldenRows(dataFolder + "/expected_results.tsv")) {
    AddSeedsOf(row, seeds);
  }
  AddContextSeeds(seeds);
  for (const auto& entry : fs::directory_iterator(dataFolder + "/images")) {
    const std::string extension = entry.path().extension().string();
    if (extension != ".bmp" && extension != ".pgm" && extension != ".ppm") continue;
    seeds.push_back({"read_images", entry.path().filename().string(), FileBytes(entry.path())});
  }
  // The order of a folder is that of no two machines.
  std::ranges::sort(seeds, {}, [](const Seed& seed) { return seed.target + '/' + seed.name; });
  return seeds;
}

}  // namespace marovia::fuzz
