#include "image/raster.h"

#include <algorithm>
#include <string>

namespace marovia {

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

}  // namespace marovia
