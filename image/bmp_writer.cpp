#include <limits>
#include <string>

#include "marovia/error.h"
#include "marovia/image.h"

#include "base/little_endian.h"
#include "image/bmp.h"

namespace marovia {
namespace {

constexpr std::uint32_t kColours = 256;
constexpr std::uint32_t kPaletteBytes = 4 * kColours;
constexpr std::uint32_t kPixelsAt = kBmpFileHeaderBytes + kBmpInfoHeaderBytes + kPaletteBytes;
constexpr std::uint32_t kDotsPerMetre = 2835;  // 72 an inch

std::size_t Stride(const Image& image) {
  return (static_cast<std::size_t>(image.Cols()) + 3) / 4 * 4;
}

std::uint32_t CheckedPixelBytes(const Image& image) {
  const std::size_t bytes = Stride(image) * static_cast<std::size_t>(image.Rows());
  if (bytes > std::numeric_limits<std::uint32_t>::max() - kPixelsAt) {
    Fail(Errc::kLimit, "The image takes " + std::to_string(bytes) + " bytes, too many for a BMP.");
  }
  return static_cast<std::uint32_t>(bytes);
}

void AppendHeaders(Bytes& file, const Image& image, std::uint32_t pixelBytes) {
  const auto put16 = [&](std::uint32_t value) { AppendLittleEndian(file, value, 2); };
  const auto put32 = [&](std::uint32_t value) { AppendLittleEndian(file, value, 4); };
  file.push_back('B');
  file.push_back('M');
  put32(kPixelsAt + pixelBytes);
  put32(0);  // reserved
  put32(kPixelsAt);

  put32(kBmpInfoHeaderBytes);
  put32(static_cast<std::uint32_t>(image.Cols()));
  put32(static_cast<std::uint32_t>(image.Rows()));
  put16(1);  // planes
  put16(8);  // bits a pixel
  put32(static_cast<std::uint32_t>(BmpCompression::kNone));
  put32(pixelBytes);
  put32(kDotsPerMetre);
  put32(kDotsPerMetre);
  put32(kColours);
  put32(0);  // all of them matter
}

void AppendGreyPalette(Bytes& file) {
  for (std::uint32_t grey = 0; grey < kColours; ++grey) {
    AppendLittleEndian(file, grey * 0x010101, 4);
  }
}

void AppendRowsFromTheBottom(Bytes& file, const Image& image) {
  const std::size_t padding = Stride(image) - static_cast<std::size_t>(image.Cols());
  for (int row = image.Rows() - 1; row >= 0; --row) {
    const auto samples = image.Row(row);
    file.insert(file.end(), samples.begin(), samples.end());
    file.insert(file.end(), padding, 0);
  }
}

}  // namespace

Bytes WriteBmp(const Image& image) {
  const std::uint32_t pixelBytes = CheckedPixelBytes(image);
  Bytes file;
  file.reserve(kPixelsAt + pixelBytes);
  AppendHeaders(file, image, pixelBytes);
  AppendGreyPalette(file);
  AppendRowsFromTheBottom(file, image);
  return file;
}

}  // namespace marovia
