// What C callers pass, as values of the library, and back. Errors as the library's,
// kInvalidArgument also for a NULL.
#pragma once

#include "marovia/codec.h"
#include "marovia/measures.h"

#include "capi/border.h"

namespace marovia::capi {

inline constexpr marovia_compress_options kCompressDefaults = {
    .size = sizeof(marovia_compress_options),
    .kind = MAROVIA_AWH,
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
    .threads = 1,
    .listener = nullptr,
    .context = nullptr};
inline constexpr marovia_decompress_options kDecompressDefaults = {
    .size = sizeof(marovia_decompress_options),
    .rate = 0,
    .max_pixels = kDefaultMaxPixels,
    .listener = nullptr,
    .context = nullptr,
    .threads = 1,
    .reduce = 0};

bool IsKind(std::int32_t kind);
FileKind KindOf(std::int32_t kind);
ByteView ViewOf(const void* file, std::size_t size);
Image CopyOf(const marovia_image* theirs, const char* name);
Region RegionOf(const marovia_region& region);
std::int64_t MaxPixelsOf(std::int64_t given);
CompressOptions OptionsOf(const marovia_compress_options* theirs);
DecompressOptions OptionsOf(const marovia_decompress_options* theirs);
TruncateOptions OptionsOf(const marovia_truncate_options& theirs);

// A canvas for a picture of so many rows and columns.
marovia_canvas CanvasOf(const marovia_canvas& theirs, int rows, int cols);
void Paint(const Image& image, const marovia_canvas& canvas);

marovia_info InfoOf(const FileInfo& info);
// Infinite where there is none.
double PsnrOf(const std::optional<float>& psnr);
marovia_measures MeasuresOf(const ErrorMeasures& measures);
// With samples that lie elsewhere.
marovia_picture PictureOf(const Image& image, std::uint8_t* samples);
marovia_picture PictureOf(const DecompressResult& result, std::uint8_t* samples);

// Memory that marovia_free gives back.
std::uint8_t* HandOut(ByteView bytes);
marovia_buffer BufferOf(const Bytes& bytes);

}  // namespace marovia::capi
