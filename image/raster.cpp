#include "image/raster.h"

#include <algorithm>
#include <limits>
#include <string>

#include "marovia/error.h"

namespace marovia {
namespace {

constexpr std::int64_t kMostPixels = std::int64_t{1} << 56;
constexpr std::int64_t kMostSide = std::numeric_limits<int>::max();

std::string Text(std::int64_t rows, std::int64_t cols) {
  return std::to_string(cols) + " columns and " + std::to_string(rows) + " rows";
}

}  // namespace

Shape CheckedShape(std::int64_t rows, std::int64_t cols, std::int64_t maxPixels) {
  if (rows <= 0 || cols <= 0) {
    Fail(Errc::kMalformed, "The image has " + Text(rows, cols) + "; both must be above 0.");
  }
  if (rows > kMostSide || cols > kMostSide) {
    Fail(Errc::kLimit, "The image has " + Text(rows, cols) + "; at most " +
                           std::to_string(kMostSide) + " of either are read.");
  }
  const std::int64_t limit = std::min(maxPixels, kMostPixels);
  if (rows * cols > limit) {
    Fail(Errc::kLimit, "The image has " + Text(rows, cols) + ", more than the limit of " +
                           std::to_string(limit) + " pixels.");
  }
  return {static_cast<int>(rows), static_cast<int>(cols)};
}

void RequireSamples(Shape shape, std::size_t present, std::int64_t needed) {
  if (static_cast<std::int64_t>(present) >= needed) return;
  Fail(Errc::kMalformed, "The image is cut short: its " + Text(shape.rows, shape.cols) + " need " +
                             std::to_string(needed) + " bytes, but " + std::to_string(present) +
                             " are there.");
}

Image RasterImage(ByteView bytes, Shape shape) {
  RequireSamples(shape, bytes.size(), shape.Pixels());
  Image image(shape.rows, shape.cols);
  std::ranges::copy(bytes.first(image.Size()), image.Samples().begin());
  return image;
}

Bytes PgmFile(int firstSize, int secondSize, const Image& image) {
  const std::string header =
      "P5\n" + std::to_string(firstSize) + " " + std::to_string(secondSize) + "\n255\n";
  Bytes file;
  file.reserve(header.size() + image.Size());
  file.insert(file.end(), header.begin(), header.end());
  file.insert(file.end(), image.Samples().begin(), image.Samples().end());
  return file;
}

std::string Alteration(bool coloured, std::uint32_t maximum, bool transparent) {
  std::string text;
  const auto add = [&text](const std::string& what) { text += (text.empty() ? "" : ", ") + what; };
  if (coloured) add("colour turned to grey");
  if (transparent) add("transparency dropped");
  if (maximum != 255) add("values scaled from " + std::to_string(maximum) + " to 255");
  return text;
}

}  // namespace marovia
