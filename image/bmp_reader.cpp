#include "image/bmp_reader.h"

#include <algorithm>
#include <span>
#include <string>
#include <utility>

#include "marovia/error.h"

#include "base/little_endian.h"
#include "image/bmp_header.h"
#include "image/bmp_rle.h"
#include "image/grey.h"

namespace marovia {
namespace {

// The rows of a BMP that is not run-length coded: each padded to a multiple of four bytes, but for
// the last one, whose padding may be missing.
class PackedRows {
 public:
  PackedRows(const BmpHeader& header, ByteView pixels) : pixels_(pixels) {
    const std::int64_t bits = std::int64_t{header.shape.cols} * header.bits;
    const std::int64_t rowBytes = (bits + 7) / 8;
    const std::int64_t stride = (bits + 31) / 32 * 4;
    RequireSamples(header.shape, pixels.size(), stride * (header.shape.rows - 1) + rowBytes);
    rowBytes_ = static_cast<std::size_t>(rowBytes);
    stride_ = static_cast<std::size_t>(stride);
  }

  [[nodiscard]] ByteView Row(int row) const {
    return pixels_.subspan(static_cast<std::size_t>(row) * stride_, rowBytes_);
  }

 private:
  ByteView pixels_;
  std::size_t rowBytes_;
  std::size_t stride_;
};

// The indices of a byte lie from its high bits to its low ones.
void UnpackRow(ByteView packed, std::size_t bits, std::span<std::uint8_t> indices) {
  const std::size_t perByte = 8 / bits;
  const unsigned mask = (1U << bits) - 1;
  for (std::size_t col = 0; col < indices.size(); ++col) {
    const std::size_t shift = 8 - bits * (col % perByte + 1);
    indices[col] = static_cast<std::uint8_t>(packed[col / perByte] >> shift & mask);
  }
}

Image UnpackIndices(const BmpHeader& header, ByteView pixels) {
  const PackedRows rows(header, pixels);
  Image indices(header.shape.rows, header.shape.cols);
  for (int row = 0; row < header.shape.rows; ++row) {
    UnpackRow(rows.Row(row), static_cast<std::size_t>(header.bits),
              indices.Row(header.ImageRow(row)));
  }
  return indices;
}

// Turns each index into the grey of its colour; gives whether a pixel was coloured.
bool ApplyPalette(const std::vector<Rgb>& palette, Image& image) {
  bool coloured = false;
  for (std::uint8_t& sample : image.Samples()) {
    if (sample >= palette.size()) {
      Fail(Errc::kMalformed, "The BMP has a pixel of colour " + std::to_string(sample) +
                                 ", but a palette of " + std::to_string(palette.size()) + ".");
    }
    const Rgb& colour = palette[sample];
    coloured = coloured || !colour.IsGrey();
    sample = LumaAsByte(colour, 255);
  }
  return coloured;
}

LoadedImage ReadIndexed(const BmpHeader& header, ByteView pixels) {
  const bool packed = header.compression == BmpCompression::kNone;
  Image image = packed ? UnpackIndices(header, pixels) : DecodeBmpRuns(header, pixels);
  const bool coloured = ApplyPalette(header.palette, image);
  return {std::move(image), ImageFormat::kBmp, Alteration(coloured, 255)};
}

// Whether any pixel lets something through. Bits that the header does not tell of mean nothing
// where they are the same in all pixels, all set or all clear.
class AlphaWatch {
 public:
  explicit AlphaWatch(const BmpHeader& header)
      : mask_(header.alphaMask), told_(header.alphaTold), common_(mask_) {}

  void See(std::uint32_t pixel) {
    any_ |= pixel & mask_;
    common_ &= pixel;
  }
  [[nodiscard]] bool IsTransparent() const { return common_ != mask_ && (told_ || any_ != 0); }

 private:
  std::uint32_t mask_;
  bool told_;
  std::uint32_t any_ = 0;  // bits that some pixel has
  std::uint32_t common_;   // bits that all have
};

// The same for pixels that hold their components.
bool ConvertRow(const BmpHeader& header, ByteView packed, std::span<std::uint8_t> greys,
                AlphaWatch& alpha) {
  const auto& [red, green, blue] = header.channels;
  const std::size_t pixelBytes = static_cast<std::size_t>(header.bits) / 8;
  bool coloured = false;
  for (std::size_t col = 0; col < greys.size(); ++col) {
    const std::uint32_t pixel = LittleEndian(packed.subspan(col * pixelBytes, pixelBytes));
    const Rgb colour{red.Of(pixel), green.Of(pixel), blue.Of(pixel)};
    coloured = coloured || !colour.IsGrey();
    alpha.See(pixel);
    greys[col] = LumaAsByte(colour, 255);
  }
  return coloured;
}

LoadedImage ReadDirect(const BmpHeader& header, ByteView pixels) {
  const PackedRows rows(header, pixels);
  Image image(header.shape.rows, header.shape.cols);
  bool coloured = false;
  AlphaWatch alpha(header);
  for (int row = 0; row < header.shape.rows; ++row) {
    coloured |= ConvertRow(header, rows.Row(row), image.Row(header.ImageRow(row)), alpha);
  }
  const auto& [red, green, blue] = header.channels;
  const std::uint32_t widest = std::max({255U, red.maximum, green.maximum, blue.maximum});
  return {std::move(image), ImageFormat::kBmp, Alteration(coloured, widest, alpha.IsTransparent())};
}

}  // namespace

LoadedImage ReadBmp(ByteView file, std::int64_t maxPixels) {
  const BmpHeader header = ReadBmpHeader(file, maxPixels);
  const ByteView pixels = file.subspan(header.pixelOffset);
  return header.HasPalette() ? ReadIndexed(header, pixels) : ReadDirect(header, pixels);
}

}  // namespace marovia
