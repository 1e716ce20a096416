#include "capi/values.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>
#include <string>

namespace marovia::capi {
namespace {

WaveletKind WaveletOf(std::int32_t wavelet) {
  if (wavelet < MAROVIA_DAUB_97 || wavelet > MAROVIA_INTEGER_22)
    Fail(Errc::kInvalidArgument, "There is no wavelet " + std::to_string(wavelet) + ".");
  return static_cast<WaveletKind>(wavelet);
}

std::size_t StrideOf(std::size_t stride, int cols) {
  const auto width = static_cast<std::size_t>(cols);
  if (stride == 0) return width;
  if (stride < width)
    Fail(Errc::kInvalidArgument, "A stride of " + std::to_string(stride) + " is less than " +
                                     std::to_string(width) + " columns.");
  return stride;
}

void CheckSides(int rows, int cols) {
  if (rows < 1 || cols < 1)
    Fail(Errc::kInvalidArgument,
         "An image of " + std::to_string(rows) + " x " + std::to_string(cols) + " pixels is none.");
  if (std::max(rows, cols) > kMostSideOfAwh)
    Fail(Errc::kLimit, "A side of " + std::to_string(std::max(rows, cols)) + " exceeds " +
                           std::to_string(kMostSideOfAwh) + ", the most that a file can hold.");
}

void Ask(marovia_listener listener, void* context, const marovia_pass* pass) {
  if (listener(context, pass) != 0) throw Cancelled();
}

PassListener ListenerOf(marovia_listener listener, void* context) {
  if (listener == nullptr) return {};
  return [=](const PassReport& report) {
    const marovia_pass pass = {.number = report.pass,
                               .found = report.significant,
                               .bits = report.bits,
                               .threshold = report.threshold};
    Ask(listener, context, &pass);
  };
}

std::function<void()> TryListenerOf(marovia_listener listener, void* context) {
  if (listener == nullptr) return {};
  return [=] { Ask(listener, context, nullptr); };
}

}  // namespace

bool IsKind(std::int32_t kind) {
  return kind >= 0 && static_cast<std::size_t>(kind) < AllKinds().size();
}

FileKind KindOf(std::int32_t kind) {
  if (!IsKind(kind))
    Fail(Errc::kInvalidArgument, "There is no kind of file " + std::to_string(kind) + ".");
  return static_cast<FileKind>(kind);
}

ByteView ViewOf(const void* file, std::size_t size) {
  if (size > 0) Require(file, "The file");
  return {static_cast<const std::uint8_t*>(file), size};
}

Image CopyOf(const marovia_image* theirs, const char* name) {
  Require(theirs, name);
  const auto image = Known(*theirs, marovia_image{});
  CheckSides(image.rows, image.cols);
  Require(image.samples, "The image's samples");
  const std::size_t stride = StrideOf(image.stride, image.cols);
  Image copy(image.rows, image.cols, Unfilled{});
  for (int r = 0; r < image.rows; ++r)
    std::copy_n(image.samples + static_cast<std::size_t>(r) * stride,
                static_cast<std::size_t>(image.cols), copy.Row(r).begin());
  return copy;
}

Region RegionOf(const marovia_region& region) {
  return {region.row1, region.col1, region.row2, region.col2};
}

std::int64_t MaxPixelsOf(std::int64_t given) {
  return given == 0 ? kDefaultMaxPixels : given;
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
  if (given.has_region != 0) options.region = RegionOf(given.region);
  options.share = given.share;
  options.pad = given.pad != 0;
  if (given.psnr != 0) options.psnr = given.psnr;
  options.lossless = given.lossless != 0;
  options.threads = given.threads;
  options.onPass = ListenerOf(given.listener, given.context);
  options.onTry = TryListenerOf(given.listener, given.context);
  return options;
}

DecompressOptions OptionsOf(const marovia_decompress_options* theirs) {
  const auto given = theirs == nullptr ? kDecompressDefaults : Known(*theirs, kDecompressDefaults);
  DecompressOptions options;
  if (given.rate != 0) options.rate = given.rate;
  options.maxPixels = MaxPixelsOf(given.max_pixels);
  options.threads = given.threads;
  options.reduce = given.reduce;
  options.onPass = ListenerOf(given.listener, given.context);
  return options;
}

TruncateOptions OptionsOf(const marovia_truncate_options& theirs) {
  const auto given = Known(theirs, marovia_truncate_options{});
  TruncateOptions options;
  if (given.rate != 0) options.rate = given.rate;
  if (given.bytes != 0) options.bytes = given.bytes;
  options.maxPixels = MaxPixelsOf(given.max_pixels);
  return options;
}

marovia_canvas CanvasOf(const marovia_canvas& theirs, int rows, int cols) {
  auto canvas = Known(theirs, marovia_canvas{});
  Require(canvas.samples, "The canvas's samples");
  if (canvas.rows != rows || canvas.cols != cols)
    Fail(Errc::kInvalidArgument, "The picture has " + std::to_string(rows) + " x " +
                                     std::to_string(cols) + " pixels, and the canvas " +
                                     std::to_string(canvas.rows) + " x " +
                                     std::to_string(canvas.cols) + ".");
  canvas.stride = StrideOf(canvas.stride, cols);
  return canvas;
}

void Paint(const Image& image, const marovia_canvas& canvas) {
  for (int r = 0; r < image.Rows(); ++r)
    std::ranges::copy(image.Row(r), canvas.samples + static_cast<std::size_t>(r) * canvas.stride);
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

marovia_measures MeasuresOf(const ErrorMeasures& measures) {
  return {.size = sizeof(marovia_measures),
          .sup_norm = measures.supNorm,
          .mean_square_error = measures.meanSquareError,
          .root_mean_square = measures.rootMeanSquare,
          .psnr = PsnrOf(measures.psnr)};
}

double PsnrOf(const std::optional<float>& psnr) {
  return psnr ? double{*psnr} : std::numeric_limits<double>::infinity();
}

marovia_picture PictureOf(const Image& image, std::uint8_t* samples) {
  return {.size = sizeof(marovia_picture),
          .samples = samples,
          .rows = image.Rows(),
          .cols = image.Cols(),
          .rate_held = 0,
          .truncated = 0};
}

marovia_picture PictureOf(const DecompressResult& result, std::uint8_t* samples) {
  marovia_picture picture = PictureOf(result.image, samples);
  picture.rate_held = result.rateHeld ? 1 : 0;
  picture.truncated = result.truncated ? 1 : 0;
  return picture;
}

std::uint8_t* HandOut(ByteView bytes) {
  auto* copy = static_cast<std::uint8_t*>(std::malloc(std::max<std::size_t>(bytes.size(), 1)));
  if (copy == nullptr) throw std::bad_alloc();
  std::ranges::copy(bytes, copy);
  return copy;
}

marovia_buffer BufferOf(const Bytes& bytes) {
  return {.data = HandOut(bytes), .size = bytes.size()};
}

}  // namespace marovia::capi
