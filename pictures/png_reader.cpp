#include <algorithm>
#include <bit>
#include <cstddef>
#include <limits>
#include <new>
#include <utility>

#include "image/raster.h"
#include "pictures/formats.h"
#include "pictures/grey_rows.h"
#include "pictures/png_library.h"

namespace marovia {
namespace {

// Text, profiles and the like are not even looked at. What is left of a file beside the samples is
// short.
constexpr std::size_t kMostChunkBytes = std::size_t{1} << 16;

// The library's own memory, given back whatever happens.
struct PngStructs {
  explicit PngStructs(PngTalk& talk)
      : png(png_create_read_struct(PNG_LIBPNG_VER_STRING, &talk, FailPng, WarnPng)),
        info(png == nullptr ? nullptr : png_create_info_struct(png)) {}
  PngStructs(const PngStructs&) = delete;
  PngStructs& operator=(const PngStructs&) = delete;
  ~PngStructs() { png_destroy_read_struct(&png, &info, nullptr); }

  png_structp png;
  png_infop info;
};

class PngReader {
 public:
  PngReader(ByteView file, std::int64_t maxPixels) : rest_(file) {
    if (info_ == nullptr) throw std::bad_alloc();
    png_set_read_fn(png_, &rest_, &TakeBytes);
    SetLimits();
    ReadHeader(maxPixels);
  }

  Picture Read();

 private:
  static void TakeBytes(png_structp png, png_bytep to, std::size_t count);
  void SetLimits();
  void ReadHeader(std::int64_t maxPixels);
  void SetPalette(SampleMeaning& meaning);
  SampleMeaning MeaningOfSamples();
  void ReadPass(int pass, GreyRows& rows, Image& image);

  PngTalk talk_;
  PngStructs structs_{talk_};
  png_structp png_ = structs_.png;
  png_infop info_ = structs_.info;
  ByteView rest_;  // of the file
  Shape shape_;
};

void PngReader::TakeBytes(png_structp png, png_bytep to, std::size_t count) {
  auto& rest = *static_cast<ByteView*>(png_get_io_ptr(png));
  if (rest.size() < count) png_error(png, "The file is cut short");
  std::memcpy(to, rest.data(), count);
  rest = rest.subspan(count);
}

void PngReader::SetLimits() {
  talk_.calls.Run([this] {
    constexpr png_uint_32 kMostSide = std::numeric_limits<std::int32_t>::max();
    png_set_user_limits(png_, kMostSide, kMostSide);
    png_set_chunk_malloc_max(png_, kMostChunkBytes);
    png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
  });
}

void PngReader::ReadHeader(std::int64_t maxPixels) {
  talk_.calls.Run([this] { png_read_info(png_, info_); });
  shape_ =
      CheckedShape(png_get_image_height(png_, info_), png_get_image_width(png_, info_), maxPixels);
}

void PngReader::SetPalette(SampleMeaning& meaning) {
  png_colorp colours = nullptr;
  int count = 0;
  png_get_PLTE(png_, info_, &colours, &count);
  for (const png_color& colour : std::span(colours, static_cast<std::size_t>(count)))
    meaning.palette.push_back({colour.red, colour.green, colour.blue});
  png_bytep alphas = nullptr;
  int alphaCount = 0;
  if (png_get_tRNS(png_, info_, &alphas, &alphaCount, nullptr) == 0) return;
  for (const png_byte alpha : std::span(alphas, static_cast<std::size_t>(alphaCount)))
    meaning.seeThrough.push_back(alpha < 255);
}

// Has the library give samples of 8 or 16 bits, and indices a byte each.
SampleMeaning PngReader::MeaningOfSamples() {
  const int type = png_get_color_type(png_, info_);
  const bool indexed = type == PNG_COLOR_TYPE_PALETTE;
  talk_.calls.Run([this, indexed] {
    if (indexed) {
      png_set_packing(png_);
    } else {
      png_set_expand(png_);
    }
    if constexpr (std::endian::native == std::endian::little) png_set_swap(png_);
    png_read_update_info(png_, info_);
  });
  SampleMeaning meaning;
  meaning.channels = png_get_channels(png_, info_);
  meaning.colour = !indexed && (type & PNG_COLOR_MASK_COLOR) != 0;
  meaning.maximum = png_get_bit_depth(png_, info_) == 16 ? 65535 : 255;
  meaning.alpha = meaning.channels % 2 == 0 ? meaning.channels - 1 : 0;
  if (indexed) SetPalette(meaning);
  return meaning;
}

// One of the seven pictures of an interlaced file, each of pixels further apart in the whole, or
// all.
void PngReader::ReadPass(int pass, GreyRows& rows, Image& image) {
  const bool interlaced = png_get_interlace_type(png_, info_) != PNG_INTERLACE_NONE;
  const auto height = static_cast<png_uint_32>(shape_.rows);
  const auto width = static_cast<png_uint_32>(shape_.cols);
  const std::size_t passRows = interlaced ? PNG_PASS_ROWS(height, pass) : height;
  const std::size_t passCols = interlaced ? PNG_PASS_COLS(width, pass) : width;
  if (passRows == 0 || passCols == 0) return;

  const int bits = rows.Meaning().maximum > 255 ? 16 : 8;
  Bytes packed(png_get_rowbytes(png_, info_));
  std::vector<std::uint16_t> samples(passCols * rows.Meaning().channels);
  Bytes greys(passCols);
  for (png_uint_32 r = 0; r < passRows; ++r) {
    talk_.calls.Run([&] { png_read_row(png_, packed.data(), nullptr); });
    WidenSamples(packed, bits, samples);
    if (!interlaced) {
      rows.Convert(samples, image.Row(static_cast<int>(r)));
      continue;
    }
    rows.Convert(samples, greys);
    const auto row = image.Row(static_cast<int>(PNG_ROW_FROM_PASS_ROW(r, pass)));
    for (png_uint_32 c = 0; c < passCols; ++c) row[PNG_COL_FROM_PASS_COL(c, pass)] = greys[c];
  }
}

Picture PngReader::Read() {
  GreyRows rows(MeaningOfSamples());
  Image image(shape_.rows, shape_.cols, Unfilled{});
  const bool interlaced = png_get_interlace_type(png_, info_) != PNG_INTERLACE_NONE;
  for (int pass = 0; pass < (interlaced ? PNG_INTERLACE_ADAM7_PASSES : 1); ++pass)
    ReadPass(pass, rows, image);
  talk_.calls.Run([this] { png_read_end(png_, info_); });
  Picture picture{std::move(image), rows.AlterationSoFar(), {}};
  if (talk_.warning[0] != 0)
    picture.notices.push_back(std::string("the PNG library says: ") + talk_.warning.data());
  return picture;
}

}  // namespace

Picture ReadPng(ByteView file, const PictureOptions& options) {
  return PngReader(file, options.maxPixels).Read();
}

}  // namespace marovia
