#include "cli/png_file.h"

#include <array>
#include <string_view>
#include <zlib.h>

#include "marovia/error.h"

namespace marovia::cli {
namespace {

constexpr std::array<std::uint8_t, 8> kSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr std::uint8_t kUp = 2;  // each row as what it differs from the one above

void AppendBigEndian(Bytes& bytes, std::uint32_t value) {
  for (const int shift : {24, 16, 8, 0}) bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}

// Length, name, content, and the checksum of the last two.
void AppendChunk(Bytes& file, std::string_view name, const Bytes& content) {
  AppendBigEndian(file, static_cast<std::uint32_t>(content.size()));
  const auto begin = static_cast<std::ptrdiff_t>(file.size());
  file.insert(file.end(), name.begin(), name.end());
  file.insert(file.end(), content.begin(), content.end());
  const auto length = static_cast<uInt>(name.size() + content.size());
  const auto sum = ::crc32(0, &*(file.begin() + begin), length);
  AppendBigEndian(file, static_cast<std::uint32_t>(sum));
}

Bytes HeaderOf(const Image& image) {
  constexpr std::array<std::uint8_t, 5> kEightBitGrey = {8, 0, 0, 0, 0};
  Bytes header;
  AppendBigEndian(header, static_cast<std::uint32_t>(image.Cols()));
  AppendBigEndian(header, static_cast<std::uint32_t>(image.Rows()));
  header.insert(header.end(), kEightBitGrey.begin(), kEightBitGrey.end());
  return header;
}

Bytes FilteredRows(const Image& image) {
  Bytes rows;
  Bytes above(static_cast<std::size_t>(image.Cols()));
  for (int r = 0; r < image.Rows(); ++r) {
    rows.push_back(kUp);
    const auto row = image.Row(r);
    for (std::size_t c = 0; c < row.size(); ++c)
      rows.push_back(static_cast<std::uint8_t>(row[c] - above[c]));
    above.assign(row.begin(), row.end());
  }
  return rows;
}

Bytes Deflated(const Bytes& bytes) {
  uLongf length = ::compressBound(bytes.size());
  Bytes deflated(length);
  if (::compress(deflated.data(), &length, bytes.data(), bytes.size()) != Z_OK)
    Fail(Errc::kOverflow, "the picture cannot be compressed");
  deflated.resize(length);
  return deflated;
}

}  // namespace

Bytes WritePng(const Image& image) {
  Bytes file(kSignature.begin(), kSignature.end());
  AppendChunk(file, "IHDR", HeaderOf(image));
  AppendChunk(file, "IDAT", Deflated(FilteredRows(image)));
  AppendChunk(file, "IEND", {});
  return file;
}

}  // namespace marovia::cli
