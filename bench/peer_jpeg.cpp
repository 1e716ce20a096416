// The header needs std::size_t and FILE declared before it.
#include <cstddef>
#include <cstdio>
// clang-format off
#include <jpeglib.h>
// clang-format on

#include <cstdlib>
#include <memory>

#include "bench/peers.h"

namespace marovia::bench {

// Where the library meets an error, its own handler prints it and ends the program.

Bytes CompressJpeg(const Image& image, int quality) {
  jpeg_compress_struct run{};
  jpeg_error_mgr errors{};
  run.err = jpeg_std_error(&errors);
  jpeg_create_compress(&run);
  unsigned char* bytes = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&run, &bytes, &size);
  run.image_width = static_cast<JDIMENSION>(image.Cols());
  run.image_height = static_cast<JDIMENSION>(image.Rows());
  run.input_components = 1;
  run.in_color_space = JCS_GRAYSCALE;
  jpeg_set_defaults(&run);
  jpeg_set_quality(&run, quality, TRUE);
  run.optimize_coding = TRUE;
  jpeg_start_compress(&run, TRUE);
  for (int r = 0; r < image.Rows(); ++r) {
    // The interface is not const-correct; the row is only read.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
    JSAMPROW row = const_cast<JSAMPROW>(image.Row(r).data());
    jpeg_write_scanlines(&run, &row, 1);
  }
  jpeg_finish_compress(&run);
  jpeg_destroy_compress(&run);
  const std::unique_ptr<unsigned char, decltype(&std::free)> owner(bytes, &std::free);
  return {bytes, bytes + size};
}

Image DecompressJpeg(ByteView file) {
  jpeg_decompress_struct run{};
  jpeg_error_mgr errors{};
  run.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&run);
  jpeg_mem_src(&run, file.data(), file.size());
  jpeg_read_header(&run, TRUE);
  jpeg_start_decompress(&run);
  Image image(static_cast<int>(run.output_height), static_cast<int>(run.output_width));
  while (run.output_scanline < run.output_height) {
    JSAMPROW row = image.Row(static_cast<int>(run.output_scanline)).data();
    jpeg_read_scanlines(&run, &row, 1);
  }
  jpeg_finish_decompress(&run);
  jpeg_destroy_decompress(&run);
  return image;
}

}  // namespace marovia::bench
