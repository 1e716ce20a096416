#include <algorithm>
#include <cstdlib>
#include <limits>
#include <span>

#include "marovia/version.h"

#include "capi/values.h"

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
    Require(file, "The buffer for the file");
    const CompressOptions chosen = OptionsOf(options);
    *file = BufferOf(Compress(CopyOf(image, "The image"), chosen).file);
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
    Give(PictureOf(result, HandOut(result.image.Samples())), *picture);
  });
}

marovia_status marovia_decompress_into(const void* file, std::size_t file_size, std::int32_t kind,
                                       const marovia_decompress_options* options,
                                       const marovia_canvas* canvas, marovia_picture* picture,
                                       marovia_error* error) {
  return Guarded(error, [&] {
    Require(picture, "The picture");
    Give(marovia_picture{}, *picture);
    Require(canvas, "The canvas");
    const ByteView view = ViewOf(file, file_size);
    const DecompressOptions chosen = OptionsOf(options);
    const FileInfo info = Inspect(view, KindOf(kind), chosen.maxPixels);
    // Known before the work unless the picture is to be smaller.
    if (chosen.reduce == 0) CanvasOf(*canvas, info.rows, info.cols);
    const DecompressResult result = Decompress(view, info.kind, chosen);
    const marovia_canvas room = CanvasOf(*canvas, result.image.Rows(), result.image.Cols());
    Paint(result.image, room);
    Give(PictureOf(result, room.samples), *picture);
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

marovia_status marovia_read_image(const void* file, std::size_t file_size, std::int64_t max_pixels,
                                  marovia_picture* picture, std::int32_t* altered,
                                  marovia_error* error) {
  return Guarded(error, [&] {
    Require(picture, "The picture");
    Give(marovia_picture{}, *picture);
    const LoadedImage loaded = ReadImage(ViewOf(file, file_size), MaxPixelsOf(max_pixels));
    if (altered != nullptr) *altered = loaded.alteration.empty() ? 0 : 1;
    Give(PictureOf(loaded.image, HandOut(loaded.image.Samples())), *picture);
  });
}

marovia_status marovia_truncate(const void* file, std::size_t file_size, std::int32_t kind,
                                const marovia_truncate_options* options, marovia_buffer* result,
                                std::int32_t* result_kind, marovia_error* error) {
  if (result != nullptr) *result = {};
  return Guarded(error, [&] {
    Require(result, "The buffer for the result");
    Require(options, "The options");
    const TruncateResult cut = Truncate(ViewOf(file, file_size), KindOf(kind), OptionsOf(*options));
    *result = BufferOf(cut.file);
    if (result_kind != nullptr) *result_kind = static_cast<std::int32_t>(cut.kind);
  });
}

marovia_status marovia_measure(const marovia_image* source, const marovia_image* reconstruction,
                               const marovia_region* region, marovia_measures* measures,
                               marovia_error* error) {
  return Guarded(error, [&] {
    Require(measures, "The measures");
    Give(marovia_measures{}, *measures);
    const auto part = region == nullptr ? std::nullopt : std::optional(RegionOf(*region));
    const Image other = CopyOf(reconstruction, "The reconstruction");
    Give(MeasuresOf(Measure(CopyOf(source, "The source"), other, part)), *measures);
  });
}

marovia_status marovia_curve(const marovia_image* image, const marovia_compress_options* options,
                             const double* rates, std::size_t count, double* psnr,
                             marovia_error* error) {
  return Guarded(error, [&] {
    if (count > 0) Require(rates, "The rates");
    if (count > 0) Require(psnr, "The room for the PSNR");
    const CompressOptions chosen = OptionsOf(options);
    std::ranges::transform(
        MeasureCurve(CopyOf(image, "The image"), chosen, std::span(rates, count)), psnr, PsnrOf);
  });
}

void marovia_free(void* memory) {
  std::free(memory);
}
