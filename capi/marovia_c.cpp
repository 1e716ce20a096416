#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "marovia/codec.h"
#include "marovia/version.h"

#include "capi/guard.h"
#include "capi/public.h"
#include "capi/sized_struct.h"

namespace marovia::capi {
namespace {

constexpr marovia_compress_options kCompressDefaults = {.size = sizeof(marovia_compress_options),
                                                        .kind = MAROVIA_AWF,
                                                        .wavelet = 0,
                                                        .levels = 0,
                                                        .pad = 1,
                                                        .rate = 0.5,
                                                        .bytes = 0,
                                                        .has_region = 0,
                                                        .share = 0.9F,
                                                        .region = {},
                                                        .psnr = 0,
                                                        .lossless = 0,
                                                        .reserved = 0};
constexpr marovia_decompress_options kDecompressDefaults = {
    .size = sizeof(marovia_decompress_options), .rate = 0, .max_pixels = kDefaultMaxPixels};

bool IsKind(std::int32_t kind) {
  return kind >= 0 && static_cast<std::size_t>(kind) < AllKinds().size();
}

FileKind KindOf(std::int32_t kind) {
  if (!IsKind(kind))
    Fail(Errc::kInvalidArgument, "There is no kind of file " + std::to_string(kind) + ".");
  return static_cast<FileKind>(kind);
}

WaveletKind WaveletOf(std::int32_t wavelet) {
  if (wavelet < MAROVIA_DAUB_97 || wavelet > MAROVIA_INTEGER_22)
    Fail(Errc::kInvalidArgument, "There is no wavelet " + std::to_string(wavelet) + ".");
  return static_cast<WaveletKind>(wavelet);
}

ByteView ViewOf(const void* file, std::size_t size) {
  if (size > 0) Require(file, "The file");
  return {static_cast<const std::uint8_t*>(file), size};
}

Image CopyOf(const marovia_image& theirs) {
  const auto image = Known(theirs, marovia_image{});
  if (image.rows < 1 || image.cols < 1)
    Fail(Errc::kInvalidArgument, "An image of " + std::to_string(image.rows) + " x " +
                                     std::to_string(image.cols) + " pixels is none.");
  if (std::max(image.rows, image.cols) > kMostSideOfAwh)
    Fail(Errc::kLimit, "A side of " + std::to_string(std::max(image.rows, image.cols)) +
                           " exceeds " + std::to_string(kMostSideOfAwh) +
                           ", the most that a file can hold.");
  Require(image.samples, "The image's samples");
  const auto width = static_cast<std::size_t>(image.cols);
  const std::size_t stride = image.stride == 0 ? width : image.stride;
  if (stride < width)
    Fail(Errc::kInvalidArgument, "A stride of " + std::to_string(stride) + " is less than " +
                                     std::to_string(width) + " columns.");
  Image copy(image.rows, image.cols);
  for (int r = 0; r < image.rows; ++r)
    std::copy_n(image.samples + static_cast<std::size_t>(r) * stride, width, copy.Row(r).begin());
  return copy;
}

CompressOptions OptionsOf(const marovia_compress_options* theirs) {
  const auto given = theirs == nullptr ? kCompressDefaults : Known(*theirs, kCompressDefaults);
  CompressOptions options;
  options.kind = KindOf(given.kind);
  options.bestWavelet = given.wavelet == MAROVIA_BEST_WAVELET;
  if (given.wavelet != 0 && !options.bestWavelet) options.wavelet = WaveletOf(given.wavelet);
  if (given.levels != 0) options.levels = given.levels;
  options.rate = given.rate;
  if (given.bytes != 0) options.bytes = given.bytes;
  const marovia_region& region = given.region;
  if (given.has_region != 0) options.region = {region.row1, region.col1, region.row2, region.col2};
  options.share = given.share;
  options.pad = given.pad != 0;
  if (given.psnr != 0) options.psnr = given.psnr;
  options.lossless = given.lossless != 0;
  return options;
}

std::int64_t MaxPixelsOf(std::int64_t given) {
  return given == 0 ? kDefaultMaxPixels : given;
}

DecompressOptions OptionsOf(const marovia_decompress_options* theirs) {
  const auto given = theirs == nullptr ? kDecompressDefaults : Known(*theirs, kDecompressDefaults);
  DecompressOptions options;
  if (given.rate != 0) options.rate = given.rate;
  options.maxPixels = MaxPixelsOf(given.max_pixels);
  return options;
}

marovia_info InfoOf(const FileInfo& info) {
  return {.size = sizeof(marovia_info),
          .kind = static_cast<std::int32_t>(info.kind),
          .wavelet = static_cast<std::int32_t>(info.wavelet),
          .levels = info.levels,
          .rows = info.rows,
          .cols = info.cols,
          .coded_rows = info.codedRows,
          .coded_cols = info.codedCols,
          .exponent = info.exponent,
          .mean = info.mean,
          .budget = info.budget.value_or(-1),
          .bits_present = info.bitsPresent,
          .fills_budget = info.fillsBudget ? 1 : 0};
}

// Memory that marovia_free gives back.
std::uint8_t* HandOut(ByteView bytes) {
  auto* copy = static_cast<std::uint8_t*>(std::malloc(std::max<std::size_t>(bytes.size(), 1)));
  if (copy == nullptr) throw std::bad_alloc();
  std::ranges::copy(bytes, copy);
  return copy;
}

marovia_buffer BufferOf(const Bytes& bytes) {
  return {.data = HandOut(bytes), .size = bytes.size()};
}

}  // namespace
}  // namespace marovia::capi

using namespace marovia;        // NOLINT(google-build-using-namespace): C has only this one
using namespace marovia::capi;  // NOLINT(google-build-using-namespace)

const char* marovia_version() {
  return kVersion;
}

const char* marovia_extension(std::int32_t kind) {
  if (!IsKind(kind)) return nullptr;
  return Extension(static_cast<FileKind>(kind)).data();
}

std::int32_t marovia_kind_of_extension(const char* extension) {
  const auto kind = extension == nullptr ? std::nullopt : KindOfExtension(extension);
  return kind ? static_cast<std::int32_t>(*kind) : -1;
}

std::int32_t marovia_kind_of_content(const void* file, std::size_t file_size) {
  if (file == nullptr) return -1;
  const auto kind = KindOfContent({static_cast<const std::uint8_t*>(file), file_size});
  return kind ? static_cast<std::int32_t>(*kind) : -1;
}

marovia_status marovia_compress_options_init(marovia_compress_options* options, std::size_t size) {
  return Guarded(nullptr, [&] {
    Require(options, "The options");
    GiveKnown(&kCompressDefaults, options, size, kLayout<marovia_compress_options>);
  });
}

marovia_status marovia_decompress_options_init(marovia_decompress_options* options,
                                               std::size_t size) {
  return Guarded(nullptr, [&] {
    Require(options, "The options");
    GiveKnown(&kDecompressDefaults, options, size, kLayout<marovia_decompress_options>);
  });
}

marovia_status marovia_compress(const marovia_image* image, const marovia_compress_options* options,
                                marovia_buffer* file, marovia_error* error) {
  if (file != nullptr) *file = {};
  return Guarded(error, [&] {
    Require(image, "The image");
    Require(file, "The buffer for the file");
    const CompressOptions chosen = OptionsOf(options);
    *file = BufferOf(Compress(CopyOf(*image), chosen).file);
  });
}

marovia_status marovia_decompress(const void* file, std::size_t file_size, std::int32_t kind,
                                  const marovia_decompress_options* options,
                                  marovia_picture* picture, marovia_error* error) {
  return Guarded(error, [&] {
    Require(picture, "The picture");
    Give(marovia_picture{}, *picture);
    const DecompressResult result =
        Decompress(ViewOf(file, file_size), KindOf(kind), OptionsOf(options));
    Give({.size = sizeof *picture,
          .samples = HandOut(result.image.Samples()),
          .rows = result.image.Rows(),
          .cols = result.image.Cols(),
          .rate_held = result.rateHeld ? 1 : 0,
          .truncated = result.truncated ? 1 : 0},
         *picture);
  });
}

marovia_status marovia_inspect(const void* file, std::size_t file_size, std::int32_t kind,
                               std::int64_t max_pixels, marovia_info* info, marovia_error* error) {
  return Guarded(error, [&] {
    Require(info, "The info");
    Give(marovia_info{}, *info);
    Give(InfoOf(Inspect(ViewOf(file, file_size), KindOf(kind), MaxPixelsOf(max_pixels))), *info);
  });
}

marovia_status marovia_truncate(const void* file, std::size_t file_size, std::int32_t kind,
                                std::int64_t bytes, marovia_buffer* result,
                                std::int32_t* result_kind, marovia_error* error) {
  if (result != nullptr) *result = {};
  return Guarded(error, [&] {
    Require(result, "The buffer for the result");
    const TruncateResult cut =
        Truncate(ViewOf(file, file_size), KindOf(kind), {.rate = {}, .bytes = bytes});
    *result = BufferOf(cut.file);
    if (result_kind != nullptr) *result_kind = static_cast<std::int32_t>(cut.kind);
  });
}

void marovia_free(void* memory) {
  std::free(memory);
}
