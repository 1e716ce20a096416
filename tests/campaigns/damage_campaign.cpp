// Cuts one image's file of a kind everywhere and damages it in many ways: whatever is done to it, a
// whole picture comes out, or Error.
//
//   damage_campaign IMAGE EXTENSION STRIDE FLIPS SIDES
//
// Decodes every STRIDE-th length of the file; FLIPS files of a small image with one to four bits
// flipped; and every combination of level byte and exponent byte (of those out of range every
// STRIDE-th) with the first SIDES of a list of sides, both ways. Prints a line for each; exit
// status 1 where a promise is broken.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <random>
#include <span>
#include <stdexcept>
#include <string>

#include "marovia/codec.h"
#include "marovia/measures.h"

#include "coding/file_header.h"
#include "context/context_header.h"
#include "tests/campaigns/campaign.h"
#include "tests/support/test_images.h"

namespace marovia {
namespace {

using test::NumberOf;
using test::ProcessorMilliseconds;

constexpr float kPsnrOfTheSame = 100;

void Require(bool holds, const std::string& what) {
  if (!holds) throw std::runtime_error(what);
}

// How often each outcome came, and the longest that one took.
struct Tally {
  std::int64_t decoded = 0;
  std::int64_t refused = 0;
  double worst = 0;  // milliseconds
};

// Decodes; nothing where the file is refused. Any other exception goes through.
std::optional<Image> Try(ByteView file, FileKind kind, std::int64_t maxPixels, Tally& tally) {
  const double start = ProcessorMilliseconds();
  std::optional<Image> image;
  try {
    DecompressResult result = Decompress(file, kind, {{}, maxPixels, {}});
    Require(result.image.Rows() == result.info.rows && result.image.Cols() == result.info.cols,
            "a picture has not the size that its file tells");
    image = std::move(result.image);
    ++tally.decoded;
  } catch (const Error&) {
    ++tally.refused;
  }
  tally.worst = std::max(tally.worst, ProcessorMilliseconds() - start);
  return image;
}

struct Subject {
  FileKind kind;
  WaveletKind wavelet;
  std::size_t header;
};

Subject SubjectOf(FileKind kind) {
  if (kind == FileKind::kAwh) return {kind, WaveletKind::kDaub97, kContextHeaderBytes};
  const bool lossless = kind == FileKind::kAwg;
  return {kind, lossless ? WaveletKind::kInteger53 : WaveletKind::kDaub97, HeaderSize(!lossless)};
}

Bytes FileOf(const Image& image, const Subject& subject, double rate) {
  return Compress(image, {.kind = subject.kind, .wavelet = subject.wavelet, .rate = rate}).file;
}

// How far the quality ever fell below the best of a shorter file.
struct Falls {
  double best = 0;
  double largest = 0;
  std::size_t largestAt = 0;
  double largestLate = 0;  // of files of 1 byte in 100 and more
  int count = 0;

  void Add(double psnr, std::size_t length, bool late) {
    const double fall = best - psnr;
    best = std::max(best, psnr);
    if (fall <= 0) return;
    ++count;
    if (late) largestLate = std::max(largestLate, fall);
    if (fall <= largest) return;
    largest = fall;
    largestAt = length;
  }
};

void CutEverywhere(const Image& image, const Subject& subject, std::size_t stride) {
  const Bytes file = FileOf(image, subject, 0.25);
  Tally tally;
  Falls falls;
  double last = 0;
  for (std::size_t length = 0; length <= file.size(); ++length) {
    if (length > subject.header + 64 && length % stride != 0 && length != file.size()) continue;
    const auto picture = Try(ByteView(file).first(length), subject.kind, kDefaultMaxPixels, tally);
    Require(
        picture.has_value() == (length >= subject.header),
        "the first " + std::to_string(length) + " bytes are " + (picture ? "decoded" : "refused"));
    if (!picture) continue;
    last = Measure(image, *picture).psnr.value_or(kPsnrOfTheSame);
    falls.Add(last, length, length * 100 >= file.size());
  }
  Require(falls.largestLate < 1, "the quality falls by a decibel as the file grows");
  std::printf(
      "%s cut: %zu bytes, %lld lengths decoded, %lld refused, worst %.1f ms, %.2f dB whole; "
      "%d falls, the largest %.3f dB at byte %zu, %.3f dB beyond a hundredth\n",
      std::string(Extension(subject.kind)).c_str(), file.size(),
      static_cast<long long>(tally.decoded), static_cast<long long>(tally.refused), tally.worst,
      last, falls.count, falls.largest, falls.largestAt, falls.largestLate);
}

void FlipBits(const Subject& subject, int flips) {
  std::mt19937 random(1);
  const Bytes file = FileOf(test::NamedImage("blobs", 61, 64), subject, 1.5);
  Tally tally;
  for (int i = 0; i < flips; ++i) {
    Bytes damaged = file;
    for (int bits = 0; bits <= i % 4; ++bits) {
      const int at = test::RandomBelow(random, static_cast<int>(8 * file.size()));
      damaged[static_cast<std::size_t>(at / 8)] ^= static_cast<std::uint8_t>(1 << at % 8);
    }
    Try(damaged, subject.kind, kDefaultMaxPixels, tally);
  }
  std::printf("%s flips: %zu bytes, %lld files decoded, %lld refused, worst %.1f ms\n",
              std::string(Extension(subject.kind)).c_str(), file.size(),
              static_cast<long long>(tally.decoded), static_cast<long long>(tally.refused),
              tally.worst);
}

constexpr std::array kSides = {1,  4,   63,   512,  3,    5,     64, 0,     2,    7,
                               16, 100, 8192, 8191, 1024, 32767, -1, 32766, 4097, -32768};

Bytes ForgedHeader(const Subject& subject, int levelByte, int exponent, int rows, int cols) {
  Bytes file;
  if (subject.kind == FileKind::kAwh) {
    AppendContextHeader(
        file, {static_cast<WaveletKind>(1 + levelByte % 3), levelByte, exponent, rows, cols, 100});
    return file;
  }
  FileHeader header{.sides = {rows, cols}, .mean = 100, .exponent = exponent};
  if (subject.kind != FileKind::kAwg) header.budget = 2000;
  file = WriteHeader(header);
  file[subject.header - 10] = static_cast<std::uint8_t>(levelByte);
  return file;
}

// A header that no compressor need have written, and some stream.
Bytes Forged(const Subject& subject, int levelByte, int exponent, int rows, int cols) {
  Bytes file = ForgedHeader(subject, levelByte, exponent, rows, cols);
  for (int i = 0; i < 40; ++i) file.push_back(static_cast<std::uint8_t>(37 * i * i + 11));
  return file;
}

void ForgeHeaders(const Subject& subject, int stride, std::size_t sides) {
  constexpr std::int64_t kMostPixels = 8192;
  Tally tally;
  const std::span used = std::span(kSides).first(std::min(sides, kSides.size()));
  for (int levelByte = 0; levelByte < 256; ++levelByte) {
    for (int exponent = 0; exponent < 256; ++exponent) {
      if (exponent > kMostExponent + 1 && exponent % stride != 0) continue;
      for (const int rows : used) {
        for (const int cols : used) {
          Try(Forged(subject, levelByte, exponent, rows, cols), subject.kind, kMostPixels, tally);
        }
      }
    }
  }
  std::printf("%s headers: %lld files decoded, %lld refused, worst %.1f ms\n",
              std::string(Extension(subject.kind)).c_str(), static_cast<long long>(tally.decoded),
              static_cast<long long>(tally.refused), tally.worst);
}

void Run(std::span<char*> arguments) {
  Require(arguments.size() == 6, "usage: damage_campaign IMAGE EXTENSION STRIDE FLIPS SIDES");
  std::ifstream stream(arguments[1], std::ios::binary);
  const Image image = ReadImage(Bytes(std::istreambuf_iterator<char>(stream), {})).image;
  const auto kind = KindOfExtension(arguments[2]);
  Require(kind.has_value(), std::string(arguments[2]) + " is no kind of file");
  const Subject subject = SubjectOf(*kind);
  const int stride = NumberOf(arguments[3]);
  CutEverywhere(image, subject, static_cast<std::size_t>(stride));
  FlipBits(subject, NumberOf(arguments[4]));
  ForgeHeaders(subject, stride, static_cast<std::size_t>(NumberOf(arguments[5])));
}

}  // namespace
}  // namespace marovia

int main(int argc, char** argv) {
  try {
    marovia::Run({argv, static_cast<std::size_t>(argc)});
  } catch (const std::exception& error) {
    std::fprintf(stderr, "damage_campaign: %s\n", error.what());
    return 1;
  }
  return 0;
}
