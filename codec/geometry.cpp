#include "codec/geometry.h"

#include <algorithm>
#include <array>
#include <string>

#include "coding/file_header.h"
#include "wavelet/catalogue.h"

namespace marovia {
namespace {

constexpr int kMostDefaultLevels = 6;
constexpr int kLeastDefaultLevels = 3;
constexpr double kMostPadding = 1.06;
constexpr std::array<std::uint8_t, 4> kNoteTag = {'M', 'V', 's', 'z'};

int PaddedSide(int side, int levels) {
  if (side < 3) side = kLeastPaddedSide;
  const int unit = 1 << levels;
  return (side + unit - 1) / unit * unit;
}

double Pixels(Sides sides) {
  return static_cast<double>(sides.rows) * sides.cols;
}

}  // namespace

Sides PaddedSides(Sides sides, int levels) {
  return {PaddedSide(sides.rows, levels), PaddedSide(sides.cols, levels)};
}

void CheckSides(Sides sides) {
  const int longest = std::max(sides.rows, sides.cols);
  if (longest <= kMostSide) return;
  Fail(Errc::kLimit, "A side of " + std::to_string(longest) + " exceeds " +
                         std::to_string(kMostSide) + ", the most that a file can hold.");
}

int LevelLimitOf(Sides sides, WaveletKind wavelet, bool pad) {
  const Sides coded = pad ? PaddedSides(sides, 0) : sides;
  return LevelLimit(coded.rows, coded.cols, wavelet);
}

int DefaultLevels(Sides sides, WaveletKind wavelet) {
  const int limit = std::max(0, LevelLimitOf(sides, wavelet, true));
  for (int levels = std::min(limit, kMostDefaultLevels); levels > kLeastDefaultLevels; --levels) {
    if (Pixels(PaddedSides(sides, levels)) <= kMostPadding * Pixels(sides)) return levels;
  }
  return std::min(limit, kLeastDefaultLevels);
}

Image Padded(const Image& image, int levels) {
  const Sides sides = PaddedSides({image.Rows(), image.Cols()}, levels);
  Image padded(sides.rows, sides.cols);
  for (int r = 0; r < sides.rows; ++r) {
    const auto source = image.Row(std::min(r, image.Rows() - 1));
    const auto row = padded.Row(r);
    std::fill(std::copy(source.begin(), source.end(), row.begin()), row.end(), source.back());
  }
  return padded;
}

Image Cropped(const Image& image, Sides sides) {
  Image cropped(sides.rows, sides.cols);
  for (int r = 0; r < sides.rows; ++r) {
    std::copy_n(image.Row(r).begin(), static_cast<std::size_t>(sides.cols), cropped.Row(r).begin());
  }
  return cropped;
}

void AppendSizeNote(Bytes& file, Sides sides) {
  file.insert(file.end(), kNoteTag.begin(), kNoteTag.end());
  for (const int side : {sides.rows, sides.cols}) {
    file.push_back(static_cast<std::uint8_t>(side & 0xFF));
    file.push_back(static_cast<std::uint8_t>(side >> 8));
  }
}

std::optional<Sides> FindSizeNote(ByteView stream, Sides coded, int levels) {
  if (stream.size() < kSizeNoteBytes) return std::nullopt;
  const ByteView note = stream.last(kSizeNoteBytes);
  if (!std::equal(kNoteTag.begin(), kNoteTag.end(), note.begin())) return std::nullopt;
  const Sides sides{note[4] | note[5] << 8, note[6] | note[7] << 8};
  if (sides.rows < 1 || sides.cols < 1 || PaddedSides(sides, levels) != coded) return std::nullopt;
  return sides;
}

}  // namespace marovia
