// Rows of samples of any meaning to rows of grey.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "marovia/image.h"

#include "image/raster.h"

namespace marovia {

// What the samples of a pixel mean, which lie beside each other in a row.
struct SampleMeaning {
  std::size_t channels = 1;     // samples of a pixel, those that nothing is known of included
  bool colour = false;          // the first three are red, green and blue; else the first is grey
  std::uint32_t maximum = 255;  // of a sample, at most 65535
  bool whiteIsZero = false;
  std::size_t alpha = 0;           // the sample that says how opaque the pixel is; 0: none does
  bool premultiplied = false;      // the other samples were multiplied by it
  std::vector<Rgb> palette{};      // where it is not empty, the first sample is a place in it; its
                                   // components go up to the maximum
  std::vector<bool> seeThrough{};  // the places of the palette that are not opaque; may be shorter
};

class GreyRows {
 public:
  explicit GreyRows(SampleMeaning meaning) : meaning_(std::move(meaning)) {}

  // One row, or a part of one. Error kMalformed where a place is not in the palette.
  void Convert(std::span<const std::uint16_t> samples, std::span<std::uint8_t> greys);

  // Of all rows so far. Fewer than 8 bits spread over 0 to 255 lose nothing.
  [[nodiscard]] std::string AlterationSoFar() const;

  [[nodiscard]] const SampleMeaning& Meaning() const { return meaning_; }

 private:
  Rgb ColourOf(std::span<const std::uint16_t> pixel);
  Rgb PaletteColour(std::size_t place);
  void DivideByAlpha(Rgb& colour, std::uint32_t alpha) const;

  SampleMeaning meaning_;
  bool coloured_ = false;
  bool transparent_ = false;
};

// Samples of 1, 2, 4, 8 or 16 bits, the latter in the order of the machine, one by one.
void WidenSamples(ByteView packed, int bits, std::span<std::uint16_t> samples);

}  // namespace marovia
