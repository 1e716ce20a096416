#include <charls/charls.h>

#include "bench/peers.h"

namespace marovia::bench {

Bytes CompressCharls(const Image& image) {
  charls::jpegls_encoder encoder;
  encoder.frame_info(
      {static_cast<std::uint32_t>(image.Cols()), static_cast<std::uint32_t>(image.Rows()), 8, 1});
  Bytes file(encoder.estimated_destination_size());
  encoder.destination(file);
  file.resize(encoder.encode(image.Samples().data(), image.Size()));
  return file;
}

Image DecompressCharls(ByteView file) {
  charls::jpegls_decoder decoder(file.data(), file.size());
  Image image(static_cast<int>(decoder.frame_info().height),
              static_cast<int>(decoder.frame_info().width));
  decoder.decode(image.Samples().data(), image.Size());
  return image;
}

}  // namespace marovia::bench
