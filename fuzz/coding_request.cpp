#include "fuzz/coding_request.h"

#include <limits>

#include "fuzz/input.h"

namespace marovia::fuzz {
namespace {

double RateOf(int thousandths) {
  using Limits = std::numeric_limits<double>;
  constexpr double kOdd[] = {Limits::max(), -1, Limits::infinity(), Limits::quiet_NaN()};
  return thousandths < 0xFFFC ? thousandths / 1000.0 : kOdd[thousandths - 0xFFFC];
}

}  // namespace

CodingRequest TakeRequest(ByteView input, int mostSide) {
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
