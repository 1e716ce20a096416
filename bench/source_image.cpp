#include "bench/source_image.h"

#include <filesystem>

#include "files/input_file.h"

namespace marovia::bench {
namespace {

int Mirrored(int index, int length) {
  const int within = index % (2 * length);
  return within < length ? within : 2 * length - 1 - within;
}

}  // namespace

Source ReadSource(const std::string& file) {
  return {std::filesystem::path(file).stem().string(),
          ReadImage(ReadInput(file, kDefaultMaxPixels)).image};
}

Source Repeated(const Source& source, int side) {
  const Image& tile = source.image;
  Image image(side, side);
  for (int r = 0; r < side; ++r) {
    for (int c = 0; c < side; ++c) {
      image(r, c) = tile(Mirrored(r, tile.Rows()), Mirrored(c, tile.Cols()));
    }
  }
  return {source.name + "-" + std::to_string(side), std::move(image)};
}

}  // namespace marovia::bench
