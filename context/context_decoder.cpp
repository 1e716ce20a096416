#include <algorithm>

#include "context/kernels.h"
#include "wavelet/catalogue.h"

namespace marovia {
namespace {

class Decoding {
 public:
  Decoding(const ContextKernels& kernels, ByteView file, const ContextHeader& header)
      : kernels_(kernels),
        header_(header),
        stream_(file.subspan(kContextHeaderBytes)),
        field_(header, header.planes) {}

  // Whether all planes ended.
  bool ReadPlanes(const PlaneListener& onPlane) {
    RangeReader coder(stream_);
    Counters counters;
    for (plane_ = header_.planes - 1; plane_ >= 0; --plane_) {
      kernels_.begin(field_, plane_);
      for (const Pass pass : kPasses) {
        kernels_.read(field_, plane_, pass, counters, coder);
        if (!coder.Ended()) continue;
        last_ = {plane_, field_.FoundCount(), BytesRead(coder)};
        return false;
      }
      last_ = {plane_, field_.FoundCount(), BytesRead(coder)};
      if (onPlane) onPlane(last_);
    }
    plane_ = 0;
    return true;
  }

  [[nodiscard]] PlaneReport Last() const { return last_; }

  Image Picture(const Inversion& how) {
    return IsInteger(header_.wavelet) ? PictureOf<std::int32_t>(how) : PictureOf<float>(how);
  }

 private:
  [[nodiscard]] std::int64_t BytesRead(const RangeReader& coder) const {
    return static_cast<std::int64_t>(kContextHeaderBytes) + (coder.Next() - stream_.data());
  }

  template <class Sample>
  Image PictureOf(const Inversion& inversion) {
    std::vector<Reconstruction> how;
    for (const BandField& band : field_.Bands())
      how.push_back(ReconstructionOf(band, header_, plane_));
    return InvertBands<Sample>(header_, inversion,
                               [&](std::size_t i, int r, std::span<Sample> row) {
                                 Join(field_.Bands()[i], r, how[i], row);
                               });
  }

  void Join(const BandField& band, int r, const Reconstruction& how, std::span<std::int32_t> row) {
    kernels_.joinWhole(field_, band, r, how, row);
  }
  void Join(const BandField& band, int r, const Reconstruction& how, std::span<float> row) {
    kernels_.joinSingle(field_, band, r, how, row);
  }

  const ContextKernels& kernels_;
  const ContextHeader& header_;
  ByteView stream_;
  ContextField field_;
  int plane_ = 0;
  PlaneReport last_{.bytes = kContextHeaderBytes};
};

}  // namespace

ContextPicture DecodeContextWith(const ContextKernels& kernels, ByteView file,
                                 const ContextDecodeOptions& options) {
  const ContextHeader header = ReadContextHeader(file, options.maxPixels);
  Decoding decoding(kernels, file, header);
  const bool complete = decoding.ReadPlanes(options.onPlane);
  const int reduce = std::min(options.reduce, header.levels);
  return {decoding.Picture({options.threads, reduce}), header, complete, decoding.Last()};
}

ContextPicture DecodeContext(ByteView file, const ContextDecodeOptions& options) {
  return DecodeContextWith(BestKernels(), file, options);
}

}  // namespace marovia
