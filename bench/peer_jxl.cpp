#include <jxl/decode_cxx.h>
#include <jxl/encode_cxx.h>

#include "marovia/error.h"

#include "bench/peers.h"

namespace marovia::bench {
namespace {

constexpr JxlPixelFormat kGrey = {1, JXL_TYPE_UINT8, JXL_NATIVE_ENDIAN, 0};

void Require(bool done) {
  if (!done) Fail(Errc::kMalformed, "The library for JPEG XL failed.");
}

void Require(JxlEncoderStatus status) {
  Require(status == JXL_ENC_SUCCESS);
}

void Describe(JxlEncoder* encoder, const Image& image) {
  JxlBasicInfo info;
  JxlEncoderInitBasicInfo(&info);
  info.xsize = static_cast<std::uint32_t>(image.Cols());
  info.ysize = static_cast<std::uint32_t>(image.Rows());
  info.num_color_channels = 1;
  info.uses_original_profile = JXL_TRUE;  // as lossless needs it
  Require(JxlEncoderSetBasicInfo(encoder, &info));
  JxlColorEncoding colour;
  JxlColorEncodingSetToSRGB(&colour, JXL_TRUE);
  Require(JxlEncoderSetColorEncoding(encoder, &colour));
}

Bytes Output(JxlEncoder* encoder, std::size_t most) {
  Bytes file(most);
  std::uint8_t* next = file.data();
  std::size_t left = file.size();
  Require(JxlEncoderProcessOutput(encoder, &next, &left));
  file.resize(file.size() - left);
  return file;
}

}  // namespace

Bytes CompressJpegXl(const Image& image, int effort) {
  const auto encoder = JxlEncoderMake(nullptr);
  Describe(encoder.get(), image);
  JxlEncoderFrameSettings* frame = JxlEncoderFrameSettingsCreate(encoder.get(), nullptr);
  Require(JxlEncoderSetFrameLossless(frame, JXL_TRUE));
  Require(JxlEncoderFrameSettingsSetOption(frame, JXL_ENC_FRAME_SETTING_EFFORT, effort));
  Require(JxlEncoderAddImageFrame(frame, &kGrey, image.Samples().data(), image.Size()));
  JxlEncoderCloseInput(encoder.get());
  return Output(encoder.get(), 2 * image.Size() + 4096);
}

Image DecompressJpegXl(ByteView file) {
  const auto decoder = JxlDecoderMake(nullptr);
  Require(JxlDecoderSubscribeEvents(decoder.get(), JXL_DEC_BASIC_INFO | JXL_DEC_FULL_IMAGE) ==
          JXL_DEC_SUCCESS);
  Require(JxlDecoderSetInput(decoder.get(), file.data(), file.size()) == JXL_DEC_SUCCESS);
  JxlDecoderCloseInput(decoder.get());
  Require(JxlDecoderProcessInput(decoder.get()) == JXL_DEC_BASIC_INFO);
  JxlBasicInfo info;
  Require(JxlDecoderGetBasicInfo(decoder.get(), &info) == JXL_DEC_SUCCESS);
  Image image(static_cast<int>(info.ysize), static_cast<int>(info.xsize));
  Require(JxlDecoderProcessInput(decoder.get()) == JXL_DEC_NEED_IMAGE_OUT_BUFFER);
  Require(JxlDecoderSetImageOutBuffer(decoder.get(), &kGrey, image.Samples().data(),
                                      image.Size()) == JXL_DEC_SUCCESS);
  Require(JxlDecoderProcessInput(decoder.get()) == JXL_DEC_FULL_IMAGE);
  return image;
}

}  // namespace marovia::bench
