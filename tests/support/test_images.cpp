#include "tests/support/test_images.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace marovia::test {
namespace {

Image Paint(int rows, int cols, auto pixel) {
  Image image(rows, cols);
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < cols; ++c) image(r, c) = static_cast<std::uint8_t>(pixel(r, c));
  }
  return image;
}

Image Noise(int rows, int cols) {
  std::uint32_t x = 12345;
  return Paint(rows, cols, [&](int, int) {
    x = (1103515245U * x + 12345U) & 0x7fffffffU;
    return x / 65536 % 256;
  });
}

// The height, at a squared distance d from its centre, of a hill of height a that ends at q.
std::int64_t Hill(std::int64_t a, std::int64_t d, std::int64_t q) {
  return std::max<std::int64_t>(0, a - a * d / q);
}

std::int64_t Blobs(int rows, int cols, std::int64_t r, std::int64_t c) {
  std::int64_t sum = 32 + (r * c + 3 * r + 5 * c) % 5;
  for (int k = 0; k < 10; ++k) {
    const std::int64_t radius = 3 + std::max(rows, cols) * (k + 2) / 24;
    const std::int64_t fromRow = r - (7 * k + 3) % 11 * rows / 11;
    const std::int64_t fromCol = c - (5 * k + 2) % 11 * cols / 11;
    sum += Hill(40 + 17 * k % 120, fromRow * fromRow + fromCol * fromCol, radius * radius);
  }
  return std::min<std::int64_t>(255, sum);
}

std::int64_t Pixel(std::string_view name, int rows, int cols, int r, int c) {
  if (name == "gradient") {
    return (255 * r / std::max(1, rows - 1) + 255 * c / std::max(1, cols - 1)) / 2;
  }
  if (name == "checker") return (r / 5 + c / 7) % 2 == 1 ? 255 : 0;
  if (name == "rings") return (r * r + 3 * c * c) / 97 % 3 == 0 ? 255 : 20;
  if (name == "halves") return c >= cols / 2 ? 128 : 0;
  if (name == "black") return 0;
  if (name == "flat") return r == rows / 2 && c == cols / 2 ? 101 : 100;
  if (name == "blobs") return Blobs(rows, cols, r, c);
  throw std::invalid_argument("no test image " + std::string(name));
}

struct Spot {
  std::int64_t row, col, radius, height;
};

Spot RandomSpot(std::mt19937& random, int rows, int cols) {
  Spot spot{};
  spot.row = RandomBelow(random, rows);
  spot.col = RandomBelow(random, cols);
  spot.radius = 2 + RandomBelow(random, rows + cols);
  spot.height = 20 + RandomBelow(random, 150);
  return spot;
}

Image RandomBlobs(std::mt19937& random, int rows, int cols) {
  std::array<Spot, 4> spots{};
  for (Spot& spot : spots) spot = RandomSpot(random, rows, cols);
  const int slope = RandomBelow(random, 4);
  const int grain = 1 + RandomBelow(random, 6);
  return Paint(rows, cols, [&](int r, int c) {
    std::int64_t sum = slope * r + RandomBelow(random, grain);
    for (const Spot& s : spots) {
      const std::int64_t d = (r - s.row) * (r - s.row) + (c - s.col) * (c - s.col);
      sum += Hill(s.height, d, s.radius * s.radius);
    }
    return std::min<std::int64_t>(255, sum);
  });
}

Image RandomEdges(std::mt19937& random, int rows, int cols) {
  const int low = RandomBelow(random, 256);
  const int high = RandomBelow(random, 256);
  const int rowPeriod = 1 + RandomBelow(random, rows);
  const int colPeriod = 1 + RandomBelow(random, cols);
  return Paint(rows, cols,
               [&](int r, int c) { return (r / rowPeriod + c / colPeriod) % 2 == 0 ? low : high; });
}

Image RandomDots(std::mt19937& random, int rows, int cols) {
  Image image(rows, cols, static_cast<std::uint8_t>(RandomBelow(random, 256)));
  for (int i = 1 + RandomBelow(random, 3); i > 0; --i) {
    const int row = RandomBelow(random, rows);
    const int col = RandomBelow(random, cols);
    image(row, col) = static_cast<std::uint8_t>(RandomBelow(random, 256));
  }
  return image;
}

}  // namespace

Image NamedImage(std::string_view name, int rows, int cols) {
  if (name == "lcgnoise") return Noise(rows, cols);
  return Paint(rows, cols, [&](int r, int c) { return Pixel(name, rows, cols, r, c); });
}

Image RandomImage(std::mt19937& random, int rows, int cols) {
  switch (RandomBelow(random, 6)) {
    case 0:
      return Paint(rows, cols, [&](int, int) { return RandomBelow(random, 256); });
    case 1:
      return {rows, cols, static_cast<std::uint8_t>(RandomBelow(random, 256))};
    case 2:
      return RandomEdges(random, rows, cols);
    case 3:
      return RandomDots(random, rows, cols);
    default:
      return RandomBlobs(random, rows, cols);
  }
}

int RandomBelow(std::mt19937& random, int below) {
  return static_cast<int>(random() % static_cast<std::uint32_t>(below));
}

}  // namespace marovia::test
