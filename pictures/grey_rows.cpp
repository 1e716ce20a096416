#include "pictures/grey_rows.h"

#include <algorithm>
#include <cstring>

#include "marovia/error.h"

namespace marovia {

void GreyRows::Convert(std::span<const std::uint16_t> samples, std::span<std::uint8_t> greys) {
  for (std::uint8_t& grey : greys) {
    const Rgb colour = ColourOf(samples.first(meaning_.channels));
    samples = samples.subspan(meaning_.channels);
    coloured_ = coloured_ || !colour.IsGrey();
    grey = LumaAsByte(colour, meaning_.maximum);
  }
}

Rgb GreyRows::ColourOf(std::span<const std::uint16_t> pixel) {
  if (!meaning_.palette.empty()) return PaletteColour(pixel[0]);
  Rgb colour{pixel[0], pixel[0], pixel[0]};
  if (meaning_.colour) colour = {pixel[0], pixel[1], pixel[2]};
  if (meaning_.alpha > 0) {
    const std::uint32_t alpha = pixel[meaning_.alpha];
    transparent_ = transparent_ || alpha < meaning_.maximum;
    if (meaning_.premultiplied) DivideByAlpha(colour, alpha);
  }
  if (meaning_.whiteIsZero) colour.red = colour.green = colour.blue = meaning_.maximum - colour.red;
  return colour;
}

Rgb GreyRows::PaletteColour(std::size_t place) {
  if (place >= meaning_.palette.size())
    Fail(Errc::kMalformed, "The image has a pixel of colour " + std::to_string(place) +
                               ", but a palette of " + std::to_string(meaning_.palette.size()) +
                               ".");
  transparent_ = transparent_ || (place < meaning_.seeThrough.size() && meaning_.seeThrough[place]);
  return meaning_.palette[place];
}

void GreyRows::DivideByAlpha(Rgb& colour, std::uint32_t alpha) const {
  if (alpha == 0) return;
  for (std::uint32_t* component : {&colour.red, &colour.green, &colour.blue})
    *component = std::min(meaning_.maximum, (*component * meaning_.maximum + alpha / 2) / alpha);
}

std::string GreyRows::AlterationSoFar() const {
  return Alteration(coloured_, std::max<std::uint32_t>(255, meaning_.maximum), transparent_);
}

void WidenSamples(ByteView packed, int bits, std::span<std::uint16_t> samples) {
  if (bits == 16) {
    std::memcpy(samples.data(), packed.first(samples.size_bytes()).data(), samples.size_bytes());
  } else if (bits == 8) {
    std::ranges::copy(packed.first(samples.size()), samples.begin());
  } else {
    UnpackSamples(packed, bits, samples);
  }
}

}  // namespace marovia
