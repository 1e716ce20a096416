#include "fuzz/targets.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

#include "app/form_pgm.h"
#include "fuzz/input.h"
#include "pictures/picture.h"
#include "tests/support/plain_context.h"
#include "tests/support/testing.h"

namespace marovia::fuzz {
namespace {

// Small pictures make for many runs; the plain codec is slow.
constexpr std::int64_t kMostPixels = 1024;
constexpr std::int64_t kMostPlainPixels = 256;

void Promise(bool holds, const std::string& promise) {
  if (!holds) throw std::logic_error(promise);
}

// A file, and which part of it or of its rate is asked for.
struct FileRequest {
  explicit FileRequest(ByteView input) {
    Input in(input);
    kind = in.Kind();
    part = in.Byte();
    file = in.Rest();
  }

  FileKind kind;
  int part;
  ByteView file;
};

DecompressOptions Limited(std::optional<double> rate) {
  DecompressOptions options;
  options.rate = rate;
  options.maxPixels = kMostPixels;
  return options;
}

void Decode(ByteView input) {
  const FileRequest asked(input);
  const bool cuts = asked.part % 2 == 1;
  const std::size_t size =
      cuts ? asked.file.size() * static_cast<std::size_t>(asked.part) / 256 : asked.file.size();
  const std::optional<double> rate =
      cuts || asked.part == 0 ? std::nullopt : std::optional(asked.part / 32.0);
  const auto result = Decompress(asked.file.first(size), asked.kind, Limited(rate));
  Promise(result.image.Rows() == result.info.rows && result.image.Cols() == result.info.cols,
          "The picture has the size that the file tells.");
  Promise(result.image.Size() <= static_cast<std::size_t>(kMostPixels), "The limit holds.");
  Promise(result.passes.size() <= 33, "A run makes at most 32 passes.");
  Promise(std::ranges::is_sorted(result.passes, {}, &PassReport::significant) &&
              result.passes.back().significant <= result.info.codedRows * result.info.codedCols,
          "What is found stays found, and is no more than there is.");
}

void Cut(ByteView input) {
  const FileRequest asked(input);
  const auto size = static_cast<std::int64_t>(asked.file.size());
  TruncateOptions options;
  options.maxPixels = kMostPixels;
  if (asked.part % 2 == 0) {
    options.rate = asked.part / 32.0;
  } else {
    options.bytes = asked.part < 16 ? size - asked.part : size * asked.part / 256;
  }
  const TruncateResult cut = Truncate(asked.file, asked.kind, options);
  const auto before = Inspect(asked.file, asked.kind, kMostPixels).budget;
  Promise(!before || Inspect(cut.file, cut.kind, kMostPixels).budget <= before,
          "No budget is raised.");
  Promise(!options.bytes || static_cast<std::int64_t>(cut.file.size()) <= *options.bytes,
          "The bytes asked for are kept to.");
  if (!options.rate || asked.kind == FileKind::kAwg) return;
  Promise(Decompress(cut.file, cut.kind, Limited({})).image ==
              Decompress(asked.file, asked.kind, Limited(options.rate)).image,
          "A cut file decodes as the long one does at its rate.");
}

void CheckWriters(const Image& image) {
  Promise(image.Size() <= static_cast<std::size_t>(kMostPixels), "The limit holds.");
  for (const PictureWriter& writer : PictureWriters())
    Promise(ReadPicture(writer.write(image)).image == image, "A picture written comes back.");
  Promise(image.Rows() != image.Cols() || ReadFormPgm(WriteFormPgm(image)) == image,
          "A square PGM of the form comes back.");
}

void ReadImages(ByteView input) {
  try {
    CheckWriters(ReadImage(input, kMostPixels).image);
  } catch (const Error&) {
    // Refused; the form may still read it.
  }
  CheckWriters(ReadFormPgm(input, kMostPixels));
}

// The first byte chooses the page.
void ReadPictures(ByteView input) {
  Input in(input);
  const int page = 1 + in.Below(3);
  CheckWriters(ReadPicture(in.Rest(), {kMostPixels, page}).image);
}

// A region leaves the rest of the image incomplete, and 9/7 rounds.
bool MustBeExact(const CompressOptions& options) {
  if (options.kind == FileKind::kAwh) return options.lossless;
  return options.kind == FileKind::kAwg && options.pad && !options.region;
}

void RoundTrip(ByteView input) {
  const auto [image, options] = TakeRequest(input, 32);
  const Bytes file = Compress(image, options).file;
  const auto size = static_cast<double>(file.size());
  // A last group of symbols may exceed the budget, and a header may exceed all of it.
  const double most = options.rate * static_cast<double>(image.Size()) / 8 + 48;
  Promise(options.kind == FileKind::kAwg || options.lossless ||
              size <= (options.bytes ? static_cast<double>(*options.bytes) : most),
          "The rate, or the bytes, are kept to.");
  const DecompressResult back = Decompress(file, options.kind);
  Promise(back.image.SameShape(image), "The size comes back.");
  Promise(!back.truncated, "A whole file is not taken for a cut one.");
  Promise(!MustBeExact(options) || back.image == image, "Lossless is lossless.");
}

void DecodePlainly(ByteView input) {
  const FileRequest asked(input);
  const FileInfo info = Inspect(asked.file, asked.kind, kMostPlainPixels);
  if (asked.kind == FileKind::kAwh) {
    const ContextPicture plain = plain::DecodeContext(asked.file);
    return Promise(plain.image == DecodeContext(asked.file).image, "Both decode to one picture.");
  }
  const std::string difference =
      test::DecodingDifference(asked.file, asked.kind, asked.part * info.cols / 16);
  Promise(difference.empty(), difference);
}

void EncodePlainly(ByteView input) {
  const auto [image, options] = TakeRequest(input, 16);
  if (options.kind == FileKind::kAwh) {
    const ContextOptions coding{.wavelet = *options.wavelet,
                                .levels = options.levels.value_or(5),
                                .bytes = options.bytes.value_or(0),
                                .region = options.region,
                                .share = std::clamp(options.share, 0.0F, 1.0F)};
    const Bytes file = EncodeContext(image, coding);
    return Promise(plain::EncodeContext(image, coding) == file, "Both code to one file.");
  }
  const std::string difference = test::EncodingDifference(image, options);
  Promise(difference.empty(), difference);
}

// Where the library refuses, all is well.
template <void (*run)(ByteView)>
void OrRefuse(ByteView input) {
  try {
    run(input);
  } catch (const Error&) {
    return;
  }
}

constexpr std::array kTargets = {Target{"decode", OrRefuse<Decode>},
                                 Target{"cut", OrRefuse<Cut>},
                                 Target{"read_images", OrRefuse<ReadImages>},
                                 Target{"read_pictures", OrRefuse<ReadPictures>},
                                 Target{"round_trip", OrRefuse<RoundTrip>},
                                 Target{"decode_plainly", OrRefuse<DecodePlainly>},
                                 Target{"encode_plainly", OrRefuse<EncodePlainly>}};

}  // namespace

std::span<const Target> Targets() {
  return kTargets;
}

}  // namespace marovia::fuzz
