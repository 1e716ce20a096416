#include <algorithm>
#include <span>
#include <string>
#include <utility>

#include "marovia/error.h"

#include "base/little_endian.h"
#include "image/bmp.h"
#include "image/raster.h"

namespace marovia {
namespace {

// Palette indices of 8 or 4 bits in code pairs of two bytes:
//
//   n i         n pixels of index i; in 4 bits of the high and the low half of i in turn
//   0 0         the next row begins
//   0 1         the image ends
//   0 2 x y     x columns to the right and y rows on
//   0 n ...     n (3 or more) indices as they are, padded to an even number of bytes
//
// Pixels that the code steps over have index 0; those outside the image are dropped: some programs
// code the padding of the rows as well, and others step over the edge. Error kMalformed where the
// code ends before the last row does.
class RunDecoder {
 public:
  RunDecoder(const BmpHeader& header, ByteView code)
      : header_(header), code_(code), indices_(header.shape.rows, header.shape.cols) {}

  Image Decode() {
    while (!ended_) DecodePair();
    return std::move(indices_);
  }

 private:
  void DecodePair() {
    if (code_.empty() && RowsAreFull()) {
      ended_ = true;
      return;
    }
    const ByteView pair = Take(2);
    if (pair[0] > 0) {
      Place(pair[0], [&](int) { return pair[1]; });
    } else {
      DecodeEscape(pair[1]);
    }
  }

  void DecodeEscape(int escape) {
    switch (escape) {
      case 0:
        return MoveTo(row_ + 1, 0);
      case 1:
        ended_ = true;
        return;
      case 2: {
        const ByteView step = Take(2);
        return MoveTo(row_ + step[1], col_ + step[0]);
      }
      default:
        DecodeLiterals(escape);
    }
  }

  void DecodeLiterals(int count) {
    const std::size_t perByte = Nibbles() ? 2 : 1;
    const ByteView bytes = Take((static_cast<std::size_t>(count) + perByte - 1) / perByte);
    Place(count, [&](int i) { return bytes[static_cast<std::size_t>(i) / perByte]; });
    code_ = code_.subspan(std::min(bytes.size() % 2, code_.size()));
  }

  // byteAt(i) is the byte that holds the i-th index of a run or of literals.
  void Place(int count, auto byteAt) {
    if (row_ == header_.shape.rows) return;
    const auto places =
        indices_.Row(header_.ImageRow(row_)).subspan(static_cast<std::size_t>(col_));
    const int placed = std::min(count, header_.shape.cols - col_);
    for (int i = 0; i < placed; ++i) {
      const int byte = byteAt(i);
      const int index = !Nibbles() ? byte : i % 2 == 0 ? byte >> 4 : byte & 15;
      places[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(index);
    }
    col_ += placed;
  }

  void MoveTo(int row, int col) {
    row_ = std::min(row, header_.shape.rows);
    col_ = std::min(col, header_.shape.cols);
  }

  ByteView Take(std::size_t count) {
    if (code_.size() < count) {
      Fail(Errc::kMalformed, "The run-length code of the BMP ends in row " + std::to_string(row_) +
                                 " of " + std::to_string(header_.shape.rows) + ".");
    }
    const ByteView taken = code_.first(count);
    code_ = code_.subspan(count);
    return taken;
  }

  [[nodiscard]] bool RowsAreFull() const {
    const Shape shape = header_.shape;
    return row_ == shape.rows || (row_ == shape.rows - 1 && col_ == shape.cols);
  }

  [[nodiscard]] bool Nibbles() const { return header_.compression == BmpCompression::kRle4; }

  const BmpHeader& header_;
  ByteView code_;
  Image indices_;
  int row_ = 0;  // in the order of the file; 0 to rows, both included
  int col_ = 0;  // 0 to cols, both included
  bool ended_ = false;
};

Image DecodeBmpRuns(const BmpHeader& header, ByteView code) {
  return RunDecoder(header, code).Decode();
}

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

Image UnpackIndices(const BmpHeader& header, ByteView pixels) {
  const PackedRows rows(header, pixels);
  Image indices(header.shape.rows, header.shape.cols);
  for (int row = 0; row < header.shape.rows; ++row) {
    UnpackSamples(rows.Row(row), header.bits, indices.Row(header.ImageRow(row)));
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
