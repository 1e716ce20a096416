#include <jxl/decode.h>
#include <jxl/decode_cxx.h>
#include <jxl/encode.h>
#include <jxl/encode_cxx.h>

#include "marovia/error.h"

#include "bench/peers.h"

namespace marovia::bench {
namespace {

constexpr JxlPixelFormat kGrey = {1, JXL_TYPE_UINT8, JXL_NATIVE_ENDIAN, 0};

void Check(bool done) {
  if (!done) Fail(Errc::kMalformed, "libjxl failed.");
}

JxlBasicInfo InfoOf(const Image& image) {
  JxlBasicInfo info;
  JxlEncoderInitBasicInfo(&info);
  info.xsize = static_cast<std::uint32_t>(image.Cols());
  info.ysize = static_cast<std::uint32_t>(image.Rows());
  info.bits_per_sample = 8;
  info.num_color_channels = 1;
  info.uses_original_profile = JXL_TRUE;
  return info;
}

Bytes OutputOf(JxlEncoder* encoder) {
  Bytes file(std::size_t{1} << 20);
  std::size_t written = 0;
  for (JxlEncoderStatus status = JXL_ENC_NEED_MORE_OUTPUT; status == JXL_ENC_NEED_MORE_OUTPUT;) {
    if (written == file.size()) file.resize(2 * file.size());
    std::uint8_t* next = file.data() + written;
    std::size_t room = file.size() - written;
    status = JxlEncoderProcessOutput(encoder, &next, &room);
    Check(status != JXL_ENC_ERROR);
    written = file.size() - room;
  }
  file.resize(written);
  return file;
}

}  // namespace

Bytes CompressJxl(const Image& image, int effort) {
  const auto encoder = JxlEncoderMake(nullptr);
  const JxlBasicInfo info = InfoOf(image);
  Check(JxlEncoderSetBasicInfo(encoder.get(), &info) == JXL_ENC_SUCCESS);
  JxlColorEncoding colour;
  JxlColorEncodingSetToSRGB(&colour, JXL_TRUE);
  Check(JxlEncoderSetColorEncoding(encoder.get(), &colour) == JXL_ENC_SUCCESS);
  JxlEncoderFrameSettings* settings = JxlEncoderFrameSettingsCreate(encoder.get(), nullptr);
  Check(JxlEncoderSetFrameLossless(settings, JXL_TRUE) == JXL_ENC_SUCCESS);
  JxlEncoderFrameSettingsSetOption(settings, JXL_ENC_FRAME_SETTING_EFFORT, effort);
  Check(JxlEncoderAddImageFrame(settings, &kGrey, image.Samples().data(), image.Size()) ==
        JXL_ENC_SUCCESS);
  JxlEncoderCloseInput(encoder.get());
  return OutputOf(encoder.get());
}

Image DecompressJxl(ByteView file) {
  const auto decoder = JxlDecoderMake(nullptr);
  Check(JxlDecoderSubscribeEvents(decoder.get(), JXL_DEC_BASIC_INFO | JXL_DEC_FULL_IMAGE) ==
        JXL_DEC_SUCCESS);
  JxlDecoderSetInput(decoder.get(), file.data(), file.size());
  JxlDecoderCloseInput(decoder.get());
  Image image;
  for (JxlDecoderStatus status = JxlDecoderProcessInput(decoder.get());
       status != JXL_DEC_FULL_IMAGE; status = JxlDecoderProcessInput(decoder.get())) {
    Check(status == JXL_DEC_BASIC_INFO || status == JXL_DEC_NEED_IMAGE_OUT_BUFFER);
    if (status == JXL_DEC_BASIC_INFO) {
      JxlBasicInfo info;
      Check(JxlDecoderGetBasicInfo(decoder.get(), &info) == JXL_DEC_SUCCESS);
      image = Image(static_cast<int>(info.ysize), static_cast<int>(info.xsize), Unfilled{});
    } else {
      Check(JxlDecoderSetImageOutBuffer(decoder.get(), &kGrey, image.Samples().data(),
                                        image.Size()) == JXL_DEC_SUCCESS);
    }
  }
  return image;
}

}  // namespace marovia::bench
