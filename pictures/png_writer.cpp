#include <new>
#include <utility>

#include "pictures/formats.h"
#include "pictures/png_library.h"

namespace marovia {
namespace {

class PngWriter {
 public:
  PngWriter() : png_(png_create_write_struct(PNG_LIBPNG_VER_STRING, &talk_, FailPng, WarnPng)) {
    if (png_ == nullptr) throw std::bad_alloc();
    info_ = png_create_info_struct(png_);
    png_set_write_fn(png_, &file_, &GiveBytes, nullptr);
  }
  PngWriter(const PngWriter&) = delete;
  PngWriter& operator=(const PngWriter&) = delete;
  ~PngWriter() { png_destroy_write_struct(&png_, &info_); }

  Bytes Write(const Image& image) {
    talk_.calls.Run([&] {
      png_set_user_limits(png_, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
      png_set_IHDR(png_, info_, static_cast<png_uint_32>(image.Cols()),
                   static_cast<png_uint_32>(image.Rows()), 8, PNG_COLOR_TYPE_GRAY,
                   PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
      png_write_info(png_, info_);
      for (int row = 0; row < image.Rows(); ++row) png_write_row(png_, image.Row(row).data());
      png_write_end(png_, info_);
    });
    return std::move(file_);
  }

 private:
  // Nothing may be thrown through the library, nor a handler left by a jump.
  static void GiveBytes(png_structp png, png_bytep bytes, std::size_t count) {
    if (!Append(*static_cast<Bytes*>(png_get_io_ptr(png)), {bytes, count}))
      png_error(png, "There is no memory for the file");
  }

  static bool Append(Bytes& file, ByteView bytes) {
    try {
      file.insert(file.end(), bytes.begin(), bytes.end());
      return true;
    } catch (const std::bad_alloc&) {
      return false;
    }
  }

  PngTalk talk_;
  Bytes file_;
  png_structp png_;
  png_infop info_ = nullptr;
};

}  // namespace

Bytes WritePng(const Image& image) {
  return PngWriter().Write(image);
}

}  // namespace marovia
