#include <algorithm>
#include <cstring>
#include <memory>
#include <openjpeg.h>

#include "marovia/error.h"

#include "bench/peers.h"

namespace marovia::bench {
namespace {

template <auto Destroy>
struct Destroyer {
  void operator()(auto* object) const { Destroy(object); }
};
using Codec = std::unique_ptr<opj_codec_t, Destroyer<opj_destroy_codec>>;
using Stream = std::unique_ptr<opj_stream_t, Destroyer<opj_stream_destroy>>;
using Picture = std::unique_ptr<opj_image_t, Destroyer<opj_image_destroy>>;

void Check(bool done) {
  if (!done) Fail(Errc::kMalformed, "OpenJPEG failed.");
}

struct Output {
  Bytes bytes;
  std::size_t at = 0;
};

OPJ_SIZE_T Write(void* from, OPJ_SIZE_T count, void* user) {
  auto& output = *static_cast<Output*>(user);
  output.bytes.resize(std::max(output.bytes.size(), output.at + count));
  std::memcpy(output.bytes.data() + output.at, from, count);
  output.at += count;
  return count;
}

struct Input {
  ByteView bytes;
  std::size_t at = 0;
};

OPJ_SIZE_T Read(void* into, OPJ_SIZE_T count, void* user) {
  auto& input = *static_cast<Input*>(user);
  count = std::min(count, input.bytes.size() - input.at);
  if (count == 0) return static_cast<OPJ_SIZE_T>(-1);
  std::memcpy(into, input.bytes.data() + input.at, count);
  input.at += count;
  return count;
}

template <class Place>
OPJ_OFF_T Skip(OPJ_OFF_T count, void* user) {
  static_cast<Place*>(user)->at += static_cast<std::size_t>(count);
  return count;
}

template <class Place>
OPJ_BOOL Seek(OPJ_OFF_T to, void* user) {
  static_cast<Place*>(user)->at = static_cast<std::size_t>(to);
  return OPJ_TRUE;
}

template <class Place>
Stream OpenStream(Place& place, OPJ_BOOL reads) {
  Stream stream(opj_stream_default_create(reads));
  opj_stream_set_user_data(stream.get(), &place, nullptr);
  opj_stream_set_skip_function(stream.get(), Skip<Place>);
  opj_stream_set_seek_function(stream.get(), Seek<Place>);
  return stream;
}

// The library takes samples of 32 bits only.
Picture ToPicture(const Image& image) {
  opj_image_cmptparm_t component{};
  component.dx = component.dy = 1;
  component.w = static_cast<OPJ_UINT32>(image.Cols());
  component.h = static_cast<OPJ_UINT32>(image.Rows());
  component.prec = 8;
  Picture picture(opj_image_create(1, &component, OPJ_CLRSPC_GRAY));
  picture->x1 = component.w;
  picture->y1 = component.h;
  std::ranges::copy(image.Samples(), picture->comps[0].data);
  return picture;
}

// A ratio of 0 keeps everything. No worker threads: the calling one does the work.
Bytes Compress(const Image& image, float ratio) {
  opj_cparameters_t parameters;
  opj_set_default_encoder_parameters(&parameters);
  parameters.tcp_numlayers = 1;
  parameters.cp_disto_alloc = 1;
  parameters.tcp_rates[0] = ratio;
  parameters.irreversible = ratio > 0 ? 1 : 0;
  const Picture picture = ToPicture(image);
  const Codec codec(opj_create_compress(OPJ_CODEC_J2K));
  Check(opj_setup_encoder(codec.get(), &parameters, picture.get()) == OPJ_TRUE);
  Check(opj_codec_set_threads(codec.get(), 0) == OPJ_TRUE);
  Output output;
  const Stream stream = OpenStream(output, OPJ_FALSE);
  opj_stream_set_write_function(stream.get(), Write);
  Check(opj_start_compress(codec.get(), picture.get(), stream.get()) == OPJ_TRUE &&
        opj_encode(codec.get(), stream.get()) == OPJ_TRUE &&
        opj_end_compress(codec.get(), stream.get()) == OPJ_TRUE);
  return std::move(output.bytes);
}

}  // namespace

Bytes CompressOpenJpeg(const Image& image, std::int64_t bytes) {
  return Compress(image, static_cast<float>(image.Size()) / static_cast<float>(bytes));
}

Bytes CompressOpenJpegLossless(const Image& image) {
  return Compress(image, 0);
}

Image DecompressOpenJpeg(ByteView file) {
  opj_dparameters_t parameters;
  opj_set_default_decoder_parameters(&parameters);
  const Codec codec(opj_create_decompress(OPJ_CODEC_J2K));
  Check(opj_setup_decoder(codec.get(), &parameters) == OPJ_TRUE);
  Check(opj_codec_set_threads(codec.get(), 0) == OPJ_TRUE);
  Input input{file};
  const Stream stream = OpenStream(input, OPJ_TRUE);
  opj_stream_set_read_function(stream.get(), Read);
  opj_stream_set_user_data_length(stream.get(), file.size());
  opj_image_t* decoded = nullptr;
  Check(opj_read_header(stream.get(), codec.get(), &decoded) == OPJ_TRUE);
  const Picture picture(decoded);
  Check(opj_decode(codec.get(), stream.get(), decoded) == OPJ_TRUE &&
        opj_end_decompress(codec.get(), stream.get()) == OPJ_TRUE);
  const opj_image_comp_t& samples = picture->comps[0];
  Image image(static_cast<int>(samples.h), static_cast<int>(samples.w));
  std::transform(samples.data, samples.data + image.Size(), image.Samples().begin(),
                 [](OPJ_INT32 sample) { return static_cast<std::uint8_t>(sample); });
  return image;
}

}  // namespace marovia::bench
