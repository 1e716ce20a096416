#include "image/formats.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "marovia/error.h"
#include "marovia/image.h"

#include "image/bmp.h"
#include "image/raster.h"

namespace marovia {
namespace {

using namespace std::string_view_literals;

struct Row {
  std::string_view name;
  std::string_view bytes;  // a '?' stands for any byte
};

constexpr std::array kRows = {
    Row{kPng, "\x89PNG\r\n\x1a\n"sv},
    Row{kJpeg, "\xff\xd8\xff"sv},
    Row{"a GIF image", "GIF87a"sv},
    Row{"a GIF image", "GIF89a"sv},
    Row{kTiff, "II*\0"sv},
    Row{kTiff, "MM\0*"sv},
    Row{kTiff, "II+\0"sv},
    Row{kTiff, "MM\0+"sv},
    Row{"a PFM image, with floating-point samples", "PF\n"sv},
    Row{"a PFM image, with floating-point samples", "Pf\n"sv},
    Row{"a thumbnail of XV", "P7 332"sv},
    Row{"a WebP image", "RIFF????WEBP"sv},
    Row{"an AVIF image", "????ftypavi"sv},
    Row{"a HEIF image", "????ftyphe"sv},
    Row{"a HEIF image", "????ftypmif1"sv},
    Row{"a JPEG 2000 image", "\0\0\0\x0cjP  "sv},
    Row{"a JPEG 2000 image", "\xff\x4f\xff\x51"sv},
    Row{"a JPEG XL image", "\0\0\0\x0cJXL "sv},
    Row{"a JPEG XL image", "\xff\x0a"sv},
    Row{"an OpenEXR image", "v/1\x01"sv},
    Row{"a QOI image", "qoif"sv},
    Row{"a FITS image", "SIMPLE  ="sv},
    Row{"an icon", "\0\0\1\0"sv},
    Row{"an SVG picture", "<svg"sv},
    Row{"an XML file, an SVG picture perhaps", "<?xml"sv},
    Row{"a web page", "<!DOCTYPE html"sv},
    Row{"a web page", "<!doctype html"sv},
    Row{"a web page", "<html"sv},
    Row{"a PDF document", "%PDF-"sv},
    Row{"a PostScript document", "%!PS"sv},
    Row{"a gzip archive", "\x1f\x8b\x08"sv},
    Row{"a bzip2 archive", "BZh"sv},
    Row{"an xz archive",
        "\xfd"
        "7zXZ\0"sv},
    Row{"a Zstandard archive", "\x28\xb5\x2f\xfd"sv},
    Row{"a zip archive", "PK\x03\x04"sv},
};

bool Begins(ByteView file, std::string_view bytes) {
  const auto matches = [](std::uint8_t byte, char wanted) {
    return wanted == '?' || byte == static_cast<std::uint8_t>(wanted);
  };
  return file.size() >= bytes.size() &&
         std::equal(bytes.begin(), bytes.end(), file.begin(),
                    [&](char wanted, std::uint8_t byte) { return matches(byte, wanted); });
}

// P, the digit of the form, and the white space and the number or the comment behind it; behind P7
// the line ends.
bool IsNetpbm(ByteView file) {
  if (file.size() < 4 || file[0] != 'P' || file[1] < '1' || file[1] > '7') return false;
  if (file[1] == '7') return file[2] == '\n';
  const bool isBlank = file[2] == ' ' || (file[2] >= '\t' && file[2] <= '\r');
  const bool isDigit = file[3] >= '0' && file[3] <= '9';
  return isBlank && (isDigit || file[3] == '#');
}

// BM, two reserved numbers that are 0, and a small size of the header that follows.
bool IsBmp(ByteView file) {
  return Begins(file, "BM"sv) && file.size() >= 18 &&
         std::ranges::all_of(file.subspan(6, 4), [](std::uint8_t byte) { return byte == 0; }) &&
         std::ranges::all_of(file.subspan(15, 3), [](std::uint8_t byte) { return byte == 0; });
}

}  // namespace

Signature SignatureOf(ByteView file) {
  if (IsNetpbm(file)) return {"a Netpbm image", 4, true};
  if (IsBmp(file)) return {"a BMP image", 9, true};
  for (const Row& row : kRows) {
    if (Begins(file, row.bytes)) return {row.name, row.bytes.size(), false};
  }
  return {};
}

void RefuseFormat(ByteView file, const std::string& whatIsRead) {
  if (file.empty()) Fail(Errc::kMalformed, "The file is empty.");
  const Signature signature = SignatureOf(file);
  if (!signature.IsKnown())
    Fail(Errc::kMalformed, "The file is no image that is known here; " + whatIsRead + " are read.");
  Fail(Errc::kUnsupported,
       "The file is " + std::string(signature.name) + "; " + whatIsRead + " are read.");
}

bool IsReadHere(ByteView file) {
  const Signature signature = SignatureOf(file);
  return signature.IsKnown() ? signature.isRead : Begins(file, "P"sv) || Begins(file, "BM"sv);
}

LoadedImage ReadImage(ByteView file, std::int64_t maxPixels) {
  if (!IsReadHere(file)) RefuseFormat(file, kReadFormats);
  return file[0] == 'P' ? ReadPnm(file, maxPixels) : ReadBmp(file, maxPixels);
}

Bytes WritePgm(const Image& image) {
  return PgmFile(image.Cols(), image.Rows(), image);
}

}  // namespace marovia
