// The bytes of a fuzzer as parameters, from the front; and as a small image and how to code it.
#pragma once

#include <cstddef>
#include <limits>

#include "marovia/codec.h"

namespace marovia::fuzz {

class Input {
 public:
  explicit Input(ByteView bytes) : rest_(bytes) {}

  // 0 behind the end.
  int Byte() {
    if (rest_.empty()) return 0;
    const int byte = rest_.front();
    rest_ = rest_.subspan(1);
    return byte;
  }
  int Below(int limit) { return Byte() % limit; }
  int Word() {
    const int low = Byte();
    return Byte() << 8 | low;
  }
  FileKind Kind() {
    const auto kinds = AllKinds();
    return kinds[static_cast<std::size_t>(Byte()) % kinds.size()];
  }
  [[nodiscard]] ByteView Rest() const { return rest_; }

 private:
  ByteView rest_;
};

struct CodingRequest {
  Image image;
  CompressOptions options;
};

inline double RateOf(int thousandths) {
  using Limits = std::numeric_limits<double>;
  constexpr double kOdd[] = {Limits::max(), -1, Limits::infinity(), Limits::quiet_NaN()};
  return thousandths < 0xFFFC ? thousandths / 1000.0 : kOdd[thousandths - 0xFFFC];
}

// One byte each but for the rate: kind; wavelet; levels, 0 for unset; flags (1 to pad, 2 for a
// region, 4 for a number of bytes in place of the rate, 8 for corners that need not lie in the
// image, 16 for lossless); rate in thousandths of a bit (two bytes, the last few values for what is
// no rate); rows; columns; two corners of the region; its share in hundredths. The rest are
// samples, which begin again where they end.
inline CodingRequest TakeRequest(ByteView input, int mostSide) {
  Input in(input);
  CodingRequest request;
  CompressOptions& options = request.options;
  options.kind = in.Kind();
  options.wavelet = static_cast<WaveletKind>(1 + in.Below(3));
  if (const int levels = in.Below(16)) options.levels = levels - 1;
  const int flags = in.Byte();
  options.pad = flags % 2 == 1;
  options.lossless = flags / 16 % 2 == 1;
  const int rate = in.Word();
  options.rate = RateOf(rate);
  if (flags / 4 % 2 == 1) options.bytes = rate;
  const int rows = 1 + in.Below(mostSide);
  const int cols = 1 + in.Below(mostSide);
  Region region{in.Byte(), in.Byte(), in.Byte(), in.Byte()};
  if (flags / 8 % 2 == 0) {
    region.row1 %= rows;
    region.col1 %= cols;
    region.row2 = region.row1 + region.row2 % (rows - region.row1);
    region.col2 = region.col1 + region.col2 % (cols - region.col1);
  }
  if (flags / 2 % 2 == 1) options.region = region;
  options.share = static_cast<float>(in.Byte() - 10) / 100;
  request.image = Image(rows, cols);
  const ByteView samples = in.Rest();
  for (std::size_t i = 0; !samples.empty() && i < request.image.Size(); ++i) {
    request.image.Samples()[i] = samples[i % samples.size()];
  }
  return request;
}

}  // namespace marovia::fuzz
