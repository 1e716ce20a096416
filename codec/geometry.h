// Sides: how many levels they bear, how they are padded, and how a file tells.
#pragma once

#include <optional>

#include "marovia/codec.h"

namespace marovia {

struct Sides {
  int rows;
  int cols;
  friend bool operator==(const Sides&, const Sides&) = default;
};

// Sides of 1 and 2 are padded to this, the smallest that bears 0 levels of coding.
constexpr int kLeastPaddedSide = 4;

// The next multiples of 2^levels.
Sides PaddedSides(Sides sides, int levels);

// Error kLimit where a side exceeds 32767.
void CheckSides(Sides sides);

// The limit of the levels for an image that is padded, or coded as it is: at least 0 in the first
// case, below it for sides of 1 and 2 in the second.
int LevelLimitOf(Sides sides, WaveletKind wavelet, bool pad);

// As many levels as help, up to 6 and the limit, as long as padding adds at most 6 % of the pixels;
// but not fewer than 3 unless the limit is lower.
int DefaultLevels(Sides sides, WaveletKind wavelet);

// The image with its last row and column repeated up to PaddedSides.
Image Padded(const Image& image, int levels);
Image Cropped(const Image& image, Sides sides);

// The size note: "MVsz", then rows and columns in 16 bits each, little-endian, behind the stream of
// an image that was padded. A decoder that does not know it never reads so far.
constexpr std::size_t kSizeNoteBytes = 8;
void AppendSizeNote(Bytes& file, Sides sides);
// The note at the end of what follows a header, if it is there and padding to `levels` levels makes
// `coded` of it.
std::optional<Sides> FindSizeNote(ByteView stream, Sides coded, int levels);

}  // namespace marovia
