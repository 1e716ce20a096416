// The library's calls for a host that passes numbers and addresses. Of every answer the comment
// lists the numbers that follow its bytes.
#include <cstdlib>
#include <string>
#include <type_traits>

#include "marovia/codec.h"
#include "marovia/image.h"
#include "marovia/measures.h"

#include "codec/coders.h"
#include "image/raster.h"
#include "web/codec/module/answer.h"
#include "web/codec/module/arguments.h"
#include "web/codec/module/exports.h"

namespace marovia::web {
namespace {

Bytes TextBytes(std::string_view text) {
  return {text.begin(), text.end()};
}

}  // namespace

MAROVIA_EXPORT(allocate) void* Allocate(std::size_t size) {
  return ::operator new(size);
}

MAROVIA_EXPORT(release) void Release(void* memory) {
  ::operator delete(memory);
}

MAROVIA_EXPORT(forget) void Forget(const Answer* answer) {
  delete answer;
}

// Extension and name, with a line break between; lossless. Null behind the last.
MAROVIA_EXPORT(kind) const Answer* Kind(std::size_t number) {
  if (number >= AllCoders().size()) return nullptr;
  const Coder& coder = AllCoders()[number];
  return Give(TextBytes(std::string(coder.extension) + "\n" + std::string(coder.name)),
              {coder.lossless ? 1.0 : 0.0});
}

// The file; its wavelet and levels.
MAROVIA_EXPORT(encode)
const Answer* Encode(const Samples* image, const Choices* choices) {
  CompressOptions options{.kind = choices->Kind(), .wavelet = GivenWavelet(choices->wavelet)};
  options.levels = GivenInt(choices->levels);
  options.rate = Given(choices->rate).value_or(options.rate);
  options.bytes = GivenBytes(choices->bytes);
  options.psnr = Given(choices->psnr);
  options.pad = choices->pad != 0;
  options.region = choices->region.Value();
  options.share = static_cast<float>(Given(choices->share).value_or(options.share));
  CompressResult result = Compress(image->Copied(), options);
  return Give(std::move(result.file), {static_cast<double>(options.kind),
                                       static_cast<double>(result.wavelet), 1.0 * result.levels});
}

// The samples; rows, columns, whether bits are missing, whether the rate was held.
MAROVIA_EXPORT(decode) const Answer* Decode(const File* file, double rate, double maxPixels) {
  DecompressOptions options{.rate = Given(rate), .maxPixels = MaxPixels(maxPixels)};
  DecompressResult result = Decompress(file->View(), file->kind, options);
  const double rows = result.image.Rows();
  const double cols = result.image.Cols();
  return Give(std::move(result.image),
              {rows, cols, result.truncated ? 1.0 : 0.0, result.rateHeld ? 1.0 : 0.0});
}

// Nothing; wavelet, levels, rows, columns, coded rows and columns, mean, exponent, budget, bits
// present, whether they fill the budget.
MAROVIA_EXPORT(info) const Answer* Info(const File* file, double maxPixels) {
  const FileInfo info = Inspect(file->View(), file->kind, MaxPixels(maxPixels));
  return Give(Bytes{}, {static_cast<double>(info.wavelet), 1.0 * info.levels, 1.0 * info.rows,
                        1.0 * info.cols, 1.0 * info.codedRows, 1.0 * info.codedCols, info.mean,
                        1.0 * info.exponent, OrNone(info.budget),
                        static_cast<double>(info.bitsPresent), info.fillsBudget ? 1.0 : 0.0});
}

// The shorter file; its kind, and whether it holds no more than that.
MAROVIA_EXPORT(truncate) const Answer* Shorten(const File* file, double rate, double bytes) {
  TruncateResult cut =
      Truncate(file->View(), file->kind, {.rate = Given(rate), .bytes = GivenBytes(bytes)});
  return Give(std::move(cut.file), {static_cast<double>(cut.kind), cut.rateHeld ? 1.0 : 0.0});
}

// Nothing; sup-norm, mean square error, its root, PSNR.
MAROVIA_EXPORT(measure)
const Answer* MeasureImages(const Samples* one, const Samples* other, const GivenRegion* region) {
  const ErrorMeasures measures = Measure(one->Copied(), other->Copied(), region->Value());
  return Give(Bytes{}, {measures.supNorm, measures.meanSquareError, measures.rootMeanSquare,
                        OrNone(measures.psnr)});
}

// The samples of a PGM, PPM or BMP; rows, columns, whether the file holds more than they do.
MAROVIA_EXPORT(read_image) const Answer* Read(const File* file, double maxPixels) {
  LoadedImage loaded = ReadImage(file->View(), MaxPixels(maxPixels));
  const double rows = loaded.image.Rows();
  const double cols = loaded.image.Cols();
  return Give(std::move(loaded.image), {rows, cols, loaded.alteration.empty() ? 0.0 : 1.0});
}

MAROVIA_EXPORT(write_image) const Answer* Write(const Samples* image, ImageFormat format) {
  const auto write = format == ImageFormat::kBmp ? WriteBmp : WritePgm;
  return Give(write(image->Copied()), {});
}

// The samples of pixels of four bytes, of which the last is not looked at; rows, columns, whether
// any was coloured.
MAROVIA_EXPORT(grey) const Answer* Grey(const std::uint8_t* rgba, int rows, int cols) {
  Image image(rows, cols, Unfilled{});
  bool coloured = false;
  for (std::uint8_t& sample : image.Samples()) {
    const Rgb pixel{rgba[0], rgba[1], rgba[2]};
    coloured = coloured || !pixel.IsGrey();
    sample = LumaAsByte(pixel, 255);
    rgba += 4;
  }
  return Give(std::move(image), {1.0 * rows, 1.0 * cols, coloured ? 1.0 : 0.0});
}

}  // namespace marovia::web
