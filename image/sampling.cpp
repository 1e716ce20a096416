#include "image/sampling.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

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

// The samples that one pixel of the smaller line covers, and how much of the outer two.
struct Span {
  int first;
  int last;
  double firstPart;
  double lastPart;
};

Span Covered(int place, int samples, int pixels) {
  const double scale = static_cast<double>(samples) / pixels;
  const double begin = place * scale;
  const double end = place + 1 == pixels ? samples : begin + scale;
  const int first = static_cast<int>(begin);
  const int last = std::max(first, static_cast<int>(std::ceil(end)) - 1);
  if (first == last) return {first, last, end - begin, 0};
  return {first, last, first + 1 - begin, end - last};
}

double Part(const Span& span, int sample) {
  if (sample == span.first) return span.firstPart;
  return sample == span.last ? span.lastPart : 1;
}

std::vector<Span> Spans(int samples, int pixels) {
  std::vector<Span> spans;
  spans.reserve(static_cast<std::size_t>(pixels));
  for (int place = 0; place < pixels; ++place) spans.push_back(Covered(place, samples, pixels));
  return spans;
}

void AddReducedRow(std::span<const std::uint8_t> row, const std::vector<Span>& columns,
                   double weight, std::vector<double>& sums) {
  for (std::size_t c = 0; c < columns.size(); ++c) {
    const Span& span = columns[c];
    double sum = 0;
    for (int sample = span.first; sample <= span.last; ++sample)
      sum += Part(span, sample) * row[static_cast<std::size_t>(sample)];
    sums[c] += weight * sum;
  }
}

int Scaled(int side, double scale) {
  return std::max(1, static_cast<int>(std::lround(side * scale)));
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

Image Reduced(const Image& image, int rows, int cols) {
  const double area = static_cast<double>(image.Size()) / (static_cast<double>(rows) * cols);
  const std::vector<Span> columns = Spans(image.Cols(), cols);
  Image reduced(rows, cols);
  for (int r = 0; r < rows; ++r) {
    const Span span = Covered(r, image.Rows(), rows);
    std::vector<double> sums(columns.size());
    for (int sample = span.first; sample <= span.last; ++sample)
      AddReducedRow(image.Row(sample), columns, Part(span, sample), sums);
    std::ranges::transform(sums, reduced.Row(r).begin(), [&](double sum) {
      return static_cast<std::uint8_t>(std::clamp(std::round(sum / area), 0.0, 255.0));
    });
  }
  return reduced;
}

Image ReducedToFit(const Image& image, int size) {
  return ReducedToFit(image, image.Rows(), image.Cols(), size);
}

Image ReducedToFit(const Image& image, int rows, int cols, int size) {
  const int longest = std::max(rows, cols);
  if (longest <= size) return image;
  const double scale = static_cast<double>(size) / longest;
  return Reduced(image, Scaled(rows, scale), Scaled(cols, scale));
}

}  // namespace marovia
