#include "fuzz/coding_request.h"

#include <cmath>
#include <limits>

#include "fuzz/input.h"

namespace marovia::fuzz {
namespace {

double RateOf(int thousandths) {
  switch (thousandths) {
    case 0xFFFF:
      return std::numeric_limits<double>::quiet_NaN();
    case 0xFFFE:
      return std::numeric_limits<double>::infinity();
    case 0xFFFD:
      return -1;
    case 0xFFFC:
      return std::numeric_limits<double>::max();
    default:
      return thousandths / 1000.0;
  }
}

struct Size {
  int rows;
  int cols;
};

Region TakeRegion(Input& in, unsigned flags, Size size) {
  Region region{in.Byte(), in.Byte(), in.Byte(), in.Byte()};
  if ((flags & kAnyRegion) != 0) return region;
  region.row1 %= size.rows;
  region.col1 %= size.cols;
  region.row2 = region.row1 + region.row2 % (size.rows - region.row1);
  region.col2 = region.col1 + region.col2 % (size.cols - region.col1);
  return region;
}

Image Squares(ByteView samples, Size size, int side) {
  Image image(size.rows, size.cols);
  if (samples.empty()) return image;
  const int across = (size.cols + side - 1) / side;
  const auto count = static_cast<int>(samples.size());
  for (int r = 0; r < size.rows; ++r) {
    for (int c = 0; c < size.cols; ++c) {
      const int square = r / side * across + c / side;
      image(r, c) = samples[static_cast<std::size_t>(square % count)];
    }
  }
  return image;
}

}  // namespace

CodingRequest TakeRequest(ByteView input, int mostSide) {
  Input in(input);
  CodingRequest request;
  CompressOptions& options = request.options;
  options.kind = in.Kind();
  options.wavelet = static_cast<WaveletKind>(1 + in.Below(3));
  if (const int levels = in.Below(16)) options.levels = levels - 1;
  const auto flags = static_cast<unsigned>(in.Byte());
  const int rate = in.Word();
  const Size size{1 + in.Below(mostSide), 1 + in.Below(mostSide)};
  options.pad = (flags & kPad) != 0;
  options.lossless = (flags & kLossless) != 0;
  options.rate = RateOf(rate);
  if ((flags & kBytes) != 0) options.bytes = rate;
  const Region region = TakeRegion(in, flags, size);
  if ((flags & kRegion) != 0) options.region = region;
  options.share = static_cast<float>(in.Byte() - 10) / 100;
  request.image = Squares(in.Rest(), size, 1 + static_cast<int>(flags >> kSquareShift & 3));
  return request;
}

}  // namespace marovia::fuzz
