#include "image/sampling.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "marovia/error.h"

#include "base/checked.h"

namespace marovia {
namespace {

std::array<int, kPictureSide> SourceLines(int lines) {
  std::array<int, kPictureSide> sources{};
  for (int i = 0; i < kPictureSide; ++i)
    sources[static_cast<std::size_t>(i)] = SourceLine(i + 1, lines);
  return sources;
}

// `grey` turns a sample of the grid into a grey value.
template <class T>
Image Sample(const Grid<T>& source, auto grey) {
  if (source.Empty()) Fail(Errc::kIndex, "There is no image to show: it has 0 pixels.");
  const auto rows = SourceLines(source.Rows());
  const auto cols = SourceLines(source.Cols());
  Image picture(kPictureSide, kPictureSide);
  auto pixel = picture.Samples().begin();
  for (const int row : rows) {
    for (const int col : cols) *pixel++ = grey(source(row, col));
  }
  return picture;
}

}  // namespace

int SourceLine(int coordinate, int lines) {
  // Exact for every size of 16 bits: the products have at most 23 bits.
  const float step = static_cast<float>(lines) / kPictureSide;
  return std::min<int>(ToInt16(static_cast<float>(coordinate) * step), lines - 1);
}

Image SampleImage(const Image& image) {
  return Sample(image, [](std::uint8_t sample) { return sample; });
}

Image SampleCoefficients(const Grid<float>& coefficients) {
  return Sample(coefficients, [](float value) {
    return static_cast<std::uint8_t>(ToInt16(std::min(255.0F, std::fabs(value))));
  });
}

}  // namespace marovia
