#include "pictures/orientation.h"

#include <cstddef>
#include <optional>
#include <utility>

namespace marovia {
namespace {

constexpr std::uint32_t kOrientationTag = 0x0112;
constexpr std::uint32_t kShortType = 3;
constexpr std::size_t kEntryBytes = 12;

// Numbers in the byte order that the header tells; none where the data end.
class ExifData {
 public:
  explicit ExifData(ByteView bytes) : bytes_(bytes) {}

  [[nodiscard]] bool BeginsWell() const {
    return bytes_.size() >= 8 && bytes_[0] == bytes_[1] && (bytes_[0] == 'I' || bytes_[0] == 'M') &&
           Number(2, 2) == 42U;
  }

  [[nodiscard]] std::optional<std::uint32_t> Number(std::size_t at, std::size_t count) const {
    if (at > bytes_.size() || bytes_.size() - at < count) return std::nullopt;
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t place = bytes_[0] == 'M' ? i : count - 1 - i;
      value = value << 8U | bytes_[at + place];
    }
    return value;
  }

 private:
  ByteView bytes_;
};

}  // namespace

int OrientationIn(ByteView exif) {
  const ExifData data(exif);
  if (!data.BeginsWell()) return 1;
  const std::size_t list = *data.Number(4, 4);
  const std::uint32_t fields = data.Number(list, 2).value_or(0);
  for (std::size_t i = 0; i < fields; ++i) {
    const std::size_t field = list + 2 + i * kEntryBytes;
    if (data.Number(field, 2) != kOrientationTag) continue;
    const std::uint32_t value = data.Number(field + 8, 2).value_or(1);
    const bool valid = data.Number(field + 2, 2) == kShortType && value >= 1 && value <= 8;
    return valid ? static_cast<int>(value) : 1;
  }
  return 1;
}

Image Upright(Image image, int orientation) {
  if (orientation < 2 || orientation > 8) return image;
  const bool turned = orientation >= 5;  // rows of the file are columns
  // Which of the file's coordinates run against those of the picture.
  const bool rowsBack =
      orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
  const bool colsBack =
      orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
  Image upright(turned ? image.Cols() : image.Rows(), turned ? image.Rows() : image.Cols(),
                Unfilled{});
  for (int r = 0; r < upright.Rows(); ++r) {
    for (int c = 0; c < upright.Cols(); ++c) {
      const int row = turned ? c : r;
      const int col = turned ? r : c;
      upright(r, c) =
          image(rowsBack ? image.Rows() - 1 - row : row, colsBack ? image.Cols() - 1 - col : col);
    }
  }
  return upright;
}

}  // namespace marovia
