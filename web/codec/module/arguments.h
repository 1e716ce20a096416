// What a host passes in: addresses, sizes, and doubles of which NaN is "not given".
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>

#include "marovia/codec.h"

namespace marovia::web {

inline std::optional<double> Given(double value) {
  return std::isnan(value) ? std::nullopt : std::optional(value);
}

inline std::optional<int> GivenInt(double value) {
  return std::isnan(value) ? std::nullopt : std::optional(static_cast<int>(value));
}

inline std::optional<std::int64_t> GivenBytes(double value) {
  return std::isnan(value) ? std::nullopt : std::optional(std::llround(value));
}

inline std::optional<WaveletKind> GivenWavelet(double value) {
  return std::isnan(value) ? std::nullopt : std::optional(static_cast<WaveletKind>(value));
}

inline std::int64_t MaxPixels(double value) {
  return GivenBytes(value).value_or(kDefaultMaxPixels);
}

// Four doubles; without a first one there is no region.
struct GivenRegion {
  double row1, col1, row2, col2;

  [[nodiscard]] std::optional<Region> Value() const {
    if (std::isnan(row1)) return std::nullopt;
    return Region{static_cast<int>(row1), static_cast<int>(col1), static_cast<int>(row2),
                  static_cast<int>(col2)};
  }
};

// How an image is to be compressed.
struct Choices {
  double kind, wavelet, levels, pad, rate, bytes, psnr;
  GivenRegion region;
  double share;

  [[nodiscard]] FileKind Kind() const {
    return std::isnan(kind) ? CompressOptions{}.kind : static_cast<FileKind>(kind);
  }
};

// An image in the host's order: its samples, row by row.
struct Samples {
  const std::uint8_t* samples;
  int rows, cols;

  [[nodiscard]] Image Copied() const {
    Image image(rows, cols, Unfilled{});
    std::copy_n(samples, image.Size(), image.Samples().begin());
    return image;
  }
};

struct File {
  const std::uint8_t* bytes;
  std::size_t size;
  FileKind kind;

  [[nodiscard]] ByteView View() const { return {bytes, size}; }
};

}  // namespace marovia::web
