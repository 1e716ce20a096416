// Colours and sample ranges on their way to grey values of 0 to 255.
#pragma once

#include <cstdint>
#include <string>

namespace marovia {

// Components of any range up to 16 bits.
struct Rgb {
  std::uint32_t red = 0;
  std::uint32_t green = 0;
  std::uint32_t blue = 0;

  [[nodiscard]] bool IsGrey() const { return red == green && green == blue; }

  // A thousand times the luma of ITU-R BT.601. The weights add up to 1000, so a grey is its own
  // luma.
  [[nodiscard]] std::uint32_t ThousandLumas() const { return 299 * red + 587 * green + 114 * blue; }
};

// A sample of 0 to maximum on the scale of 0 to 255, rounded.
inline std::uint8_t ScaledToByte(std::uint32_t sample, std::uint32_t maximum) {
  if (maximum == 255) return static_cast<std::uint8_t>(sample);
  return static_cast<std::uint8_t>((std::uint64_t{sample} * 255 + maximum / 2) / maximum);
}

// The luma of components of 0 to maximum on the same scale, rounded once.
inline std::uint8_t LumaAsByte(const Rgb& colour, std::uint32_t maximum) {
  return ScaledToByte(colour.ThousandLumas(), 1000 * maximum);
}

// What a reader says of an image whose pixels were coloured, whose samples went up to `maximum`, or
// some of whose pixels let something through.
std::string Alteration(bool coloured, std::uint32_t maximum, bool transparent = false);

}  // namespace marovia
