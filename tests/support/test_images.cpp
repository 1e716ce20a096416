#include "tests/support/testing.h"

namespace marovia::test {
namespace {

Image Paint(int rows, int cols, auto pixel) {
  Image image(rows, cols);
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < cols; ++c) image(r, c) = static_cast<std::uint8_t>(pixel(r, c));
  }
  return image;
}

std::int64_t Blobs(int rows, int cols, std::int64_t r, std::int64_t c) {
  std::int64_t sum = 32 + (r * c + 3 * r + 5 * c) % 5;
  for (int k = 0; k < 10; ++k) {
    const std::int64_t radius = 3 + std::max(rows, cols) * (k + 2) / 24;
    const std::int64_t fromRow = r - (7 * k + 3) % 11 * rows / 11;
    const std::int64_t fromCol = c - (5 * k + 2) % 11 * cols / 11;
    const std::int64_t height = 40 + 17 * k % 120;
    const std::int64_t distance = fromRow * fromRow + fromCol * fromCol;
    sum += std::max<std::int64_t>(0, height - height * distance / (radius * radius));
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

}  // namespace

Image NamedImage(std::string_view name, int rows, int cols) {
  if (name == "lcgnoise") {
    std::uint32_t x = 12345;
    return Paint(rows, cols, [&](int, int) {
      x = (1103515245U * x + 12345U) & 0x7fffffffU;
      return x / 65536 % 256;
    });
  }
  return Paint(rows, cols, [&](int r, int c) { return Pixel(name, rows, cols, r, c); });
}

Image RandomImage(std::mt19937& random, int rows, int cols) {
  // A flat page, slopes, checks with hard edges, noise of any strength, and mixtures.
  const auto some = [&](int below) { return random() % 2 == 0 ? RandomBelow(random, below) : 0; };
  const int base = RandomBelow(random, 256);
  const int slope = some(4);
  const int step = some(256);
  const int height = 1 + RandomBelow(random, rows);
  const int width = 1 + RandomBelow(random, cols);
  const int grain = 1 + some(random() % 2 == 0 ? 256 : 8);
  Image image = Paint(rows, cols, [&](int r, int c) {
    const int check = (r / height + c / width) % 2 * step;
    return std::min(255, (base + check + slope * (r + c) / 4) % 300 + RandomBelow(random, grain));
  });
  for (int dots = some(4); dots > 0; --dots) {
    const int row = RandomBelow(random, rows);
    image(row, RandomBelow(random, cols)) = static_cast<std::uint8_t>(RandomBelow(random, 256));
  }
  return image;
}

int RandomBelow(std::mt19937& random, int below) {
  return static_cast<int>(random() % static_cast<std::uint32_t>(below));
}

}  // namespace marovia::test
