#include <algorithm>
#include <bit>
#include <cstdlib>
#include <limits>
#include <string>

#include "marovia/error.h"

#include "base/little_endian.h"
#include "image/bmp.h"

namespace marovia {
namespace {

// Behind the fields of the smaller information header, whether they belong to a larger one or not.
constexpr std::size_t kMasksAt = kBmpFileHeaderBytes + kBmpInfoHeaderBytes;
constexpr std::size_t kMasksBytes = 12;
constexpr std::size_t kAlphaMaskAt = kMasksAt + kMasksBytes;
constexpr std::size_t kInfoBytesWithAlpha = 56;
constexpr std::size_t kShortOs2HeaderBytes = 16;
constexpr std::size_t kOs2HeaderBytes = 64;

std::uint32_t Field(ByteView file, std::size_t at, std::size_t bytes) {
  return LittleEndian(file.subspan(at, bytes));
}

void RequireHeader(ByteView file, std::size_t bytes) {
  if (file.size() >= bytes) return;
  Fail(Errc::kMalformed, "The BMP ends within its header, which takes " + std::to_string(bytes) +
                             " bytes; " + std::to_string(file.size()) + " are there.");
}

std::size_t InfoHeaderBytes(ByteView file) {
  RequireHeader(file, kBmpFileHeaderBytes + 4);
  const std::uint32_t bytes = Field(file, kBmpFileHeaderBytes, 4);
  constexpr std::array<std::uint32_t, 8> kRead = {12, 16, 40, 52, 56, 64, 108, 124};
  if (std::ranges::find(kRead, bytes) == kRead.end()) {
    Fail(Errc::kUnsupported, "The BMP has an information header of " + std::to_string(bytes) +
                                 " bytes; 12, 16, 40, 52, 56, 64, 108 and 124 are read.");
  }
  RequireHeader(file, kBmpFileHeaderBytes + bytes);
  return bytes;
}

// The headers of OS/2, the second of them cut after the number of bits. From 3 on it numbers
// compressions in its own way.
bool IsOfOs2(std::size_t infoBytes) {
  return infoBytes == kShortOs2HeaderBytes || infoBytes == kOs2HeaderBytes;
}

void CheckDepth(int bits, std::uint32_t compression, bool isOfOs2) {
  const std::uint32_t last = isOfOs2 ? 2 : 3;
  if (compression > last) {
    Fail(Errc::kUnsupported, "The BMP has compression " + std::to_string(compression) +
                                 (isOfOs2 ? " of OS/2" : "") + "; 0 to " + std::to_string(last) +
                                 " are read.");
  }
  constexpr std::array kRead = {1, 2, 4, 8, 16, 24, 32};
  if (std::ranges::find(kRead, bits) == kRead.end()) {
    Fail(Errc::kUnsupported, "The BMP has " + std::to_string(bits) +
                                 " bits a pixel; 1, 2, 4, 8, 16, 24 and 32 are read.");
  }
  const std::array<bool, 4> fits = {true, bits == 8, bits == 4, bits == 16 || bits == 32};
  if (!fits[compression]) {
    Fail(Errc::kMalformed, "The BMP has compression " + std::to_string(compression) + " with " +
                               std::to_string(bits) + " bits a pixel.");
  }
}

struct Fields {
  std::int64_t cols;
  std::int64_t rows;  // below 0: the top row comes first
  int bits;
  std::uint32_t compression;
  std::uint32_t colours;  // of the palette; 0: as many as the depth allows
};

Fields CoreFields(ByteView file) {
  return {Field(file, 18, 2), Field(file, 20, 2), static_cast<int>(Field(file, 24, 2)), 0, 0};
}

Fields InfoFields(ByteView file, bool isShort) {
  return {static_cast<std::int32_t>(Field(file, 18, 4)),
          static_cast<std::int32_t>(Field(file, 22, 4)), static_cast<int>(Field(file, 28, 2)),
          isShort ? 0 : Field(file, 30, 4), isShort ? 0 : Field(file, 46, 4)};
}

std::size_t PixelOffset(ByteView file, std::size_t headers) {
  const std::size_t offset = Field(file, 10, 4);
  if (offset < headers || offset > file.size()) {
    Fail(Errc::kMalformed, "The BMP has its pixels at byte " + std::to_string(offset) +
                               "; its headers end at " + std::to_string(headers) +
                               " and the file at " + std::to_string(file.size()) + ".");
  }
  return offset;
}

// `bytes` are those between the headers and the pixels; `colours` of 0 stands for all of the depth.
std::vector<Rgb> Palette(ByteView bytes, std::size_t entryBytes, std::size_t colours, int bits) {
  const std::size_t most = std::size_t{1} << bits;
  if (colours == 0 || colours > most) colours = most;
  std::vector<Rgb> palette(std::min(colours, bytes.size() / entryBytes));
  for (std::size_t i = 0; i < palette.size(); ++i) {
    const ByteView entry = bytes.subspan(i * entryBytes, entryBytes);
    palette[i] = {entry[2], entry[1], entry[0]};
  }
  return palette;
}

BmpChannel ChannelOf(std::uint32_t mask, int bits) {
  const int shift = mask == 0 ? 0 : std::countr_zero(mask);
  const std::uint32_t maximum = mask >> shift;
  const bool beyondPixel = (std::uint64_t{mask} >> bits) != 0;
  if (mask == 0 || beyondPixel || (maximum & (maximum + 1)) != 0) {
    Fail(Errc::kMalformed, "The BMP has a component mask of " + std::to_string(mask) + " with " +
                               std::to_string(bits) + " bits a pixel.");
  }
  return {mask, shift, maximum};
}

std::array<BmpChannel, 3> Channels(ByteView file, const BmpHeader& header) {
  std::array<std::uint32_t, 3> masks = {0xFF0000, 0x00FF00, 0x0000FF};
  if (header.compression == BmpCompression::kBitFields) {
    for (std::size_t i = 0; i < 3; ++i) masks[i] = Field(file, kMasksAt + 4 * i, 4);
  } else if (header.bits == 16) {
    masks = {0x7C00, 0x03E0, 0x001F};
  }
  return {ChannelOf(masks[0], header.bits), ChannelOf(masks[1], header.bits),
          ChannelOf(masks[2], header.bits)};
}

// The mask of the larger headers. With 32 bits a pixel the bits that no component takes are one as
// well, for many writers put it there and tell nothing of it.
void FindAlpha(ByteView file, std::size_t infoBytes, BmpHeader& header) {
  const auto& [red, green, blue] = header.channels;
  const std::uint32_t ofPixel = std::numeric_limits<std::uint32_t>::max() >> (32 - header.bits);
  const std::uint32_t told = infoBytes >= kInfoBytesWithAlpha && !IsOfOs2(infoBytes)
                                 ? Field(file, kAlphaMaskAt, 4) & ofPixel
                                 : 0;
  header.alphaTold = told != 0;
  if (header.alphaTold) {
    header.alphaMask = told;
  } else if (header.bits == 32) {
    header.alphaMask = ~(red.mask | green.mask | blue.mask);
  }
}

}  // namespace

BmpHeader ReadBmpHeader(ByteView file, std::int64_t maxPixels) {
  const std::size_t infoBytes = InfoHeaderBytes(file);
  const bool core = infoBytes == kBmpCoreHeaderBytes;
  const Fields fields =
      core ? CoreFields(file) : InfoFields(file, infoBytes == kShortOs2HeaderBytes);
  CheckDepth(fields.bits, fields.compression, IsOfOs2(infoBytes));

  BmpHeader header;
  header.shape = CheckedShape(std::abs(fields.rows), fields.cols, maxPixels);
  header.bottomUp = fields.rows > 0;
  header.bits = fields.bits;
  header.compression = BmpCompression{fields.compression};

  const bool masks = header.compression == BmpCompression::kBitFields;
  const std::size_t headers =
      std::max(kBmpFileHeaderBytes + infoBytes, masks ? kMasksAt + kMasksBytes : 0);
  header.pixelOffset = PixelOffset(file, headers);
  if (header.HasPalette()) {
    header.palette = Palette(file.subspan(headers, header.pixelOffset - headers), core ? 3 : 4,
                             fields.colours, header.bits);
  } else {
    header.channels = Channels(file, header);
    FindAlpha(file, infoBytes, header);
  }
  return header;
}

}  // namespace marovia
