#include "app/form_pgm.h"

#include <algorithm>
#include <string>

#include "marovia/error.h"

#include "base/checked.h"
#include "base/number_text.h"
#include "image/raster.h"

namespace marovia {
namespace {

constexpr std::size_t kFieldBytes = 5;

// Takes a field and its end mark off the front of `bytes`; gives the field without the mark.
std::string TakeField(ByteView& bytes, char endMark) {
  const ByteView window = bytes.first(std::min(kFieldBytes, bytes.size()));
  const auto mark = std::ranges::find(window, static_cast<std::uint8_t>(endMark));
  if (mark == window.end() && window.size() < kFieldBytes) {
    Fail(Errc::kMalformed, "The PGM ends within its header.");
  }
  std::string field(window.begin(), mark);
  bytes = bytes.subspan(std::min(field.size() + 1, window.size()));
  return field;
}

int SizeOf(const std::string& field) {
  return ToInt16(LeadingNumber(field));
}

}  // namespace

Image ReadFormPgm(ByteView file, std::int64_t maxPixels) {
  if (file.size() < 3 || file[0] != 'P' || file[1] != '5') {
    Fail(Errc::kMalformed, "The file is not a binary PGM: it does not begin with P5.");
  }
  ByteView rest = file.subspan(3);
  const std::string width = TakeField(rest, ' ');
  const int cols = width == "1MB" ? 1024 : SizeOf(width);
  const int rows = SizeOf(TakeField(rest, '\n'));
  TakeField(rest, '\n');
  return RasterImage(rest, CheckedShape(rows, cols, maxPixels));
}

Bytes WriteFormPgm(const Image& image) {
  return PgmFile(image.Rows(), image.Cols(), image);
}

}  // namespace marovia
