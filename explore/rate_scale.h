// Lengths of a file in the units that people choose them by.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace marovia {

struct RateScale {
  // Below this many bits a pixel no picture is worth looking at.
  static constexpr double kLeastRate = 0.01;
  // Room for the header of every kind and a few symbols.
  static constexpr std::int64_t kLeastBytes = 32;

  std::int64_t pixels = 1;
  std::int64_t most = 1;  // bytes

  [[nodiscard]] std::int64_t Least() const {
    return std::min(most, std::max(kLeastBytes, Rounded(kLeastRate * Pixels() / 8)));
  }
  [[nodiscard]] std::int64_t Held(std::int64_t bytes) const {
    return std::clamp(bytes, Least(), most);
  }

  // On a logarithmic scale from the least, 0, to the most, 1.
  [[nodiscard]] std::int64_t BytesAt(double part) const {
    return Held(Rounded(static_cast<double>(Least()) * std::pow(Span(), part)));
  }
  [[nodiscard]] double PartOf(std::int64_t bytes) const {
    if (most == Least()) return 1;
    const auto least = static_cast<double>(Least());
    return std::log(static_cast<double>(Held(bytes)) / least) / std::log(Span());
  }

  // Bits a pixel, and how many bytes of 8-bit pixels a byte stands for.
  [[nodiscard]] double RateOf(std::int64_t bytes) const {
    return 8 * static_cast<double>(bytes) / Pixels();
  }
  [[nodiscard]] double RatioOf(std::int64_t bytes) const {
    return Pixels() / static_cast<double>(std::max<std::int64_t>(bytes, 1));
  }
  [[nodiscard]] std::int64_t BytesOfRate(double rate) const {
    return Held(Rounded(std::min(rate, 64.0) * Pixels() / 8));
  }
  [[nodiscard]] std::int64_t BytesOfRatio(double ratio) const {
    return BytesOfRate(8 / std::max(ratio, 1e-3));
  }

 private:
  [[nodiscard]] double Pixels() const { return static_cast<double>(pixels); }
  [[nodiscard]] double Span() const {
    return static_cast<double>(most) / static_cast<double>(Least());
  }
  static std::int64_t Rounded(double bytes) { return std::llround(bytes); }
};

}  // namespace marovia
