// How a found cell raises the scores around it, in its own band and in those beside and below it,
// and marks the groups in which it does. A score stays below 70, and a border around each band
// takes what falls beside it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "base/bits.h"
#include "context/field.h"

namespace marovia {

MAROVIA_INLINE void RaiseOne(std::uint8_t& score, std::uint8_t amount) {
  score = static_cast<std::uint8_t>(score + amount);
}

// Scores stay below 128: adding words carries nothing from one to the next.
template <class Word>
MAROVIA_INLINE void RaiseScores(std::uint8_t* scores, const Raise& raise) {
  Word word;
  Word added;
  std::memcpy(&word, scores, sizeof word);
  std::memcpy(&added, raise.data(), sizeof added);
  word = static_cast<Word>(word + added);
  std::memcpy(scores, &word, sizeof word);
}

MAROVIA_INLINE void Mark(const BandField& band, int r, int c) {
  band.marks[(r >> 3) * band.markPitch + (c >> 6)] = 1;
}

// The four groups that the corners of a raised square lie in are all that it reaches.
MAROVIA_INLINE void MarkSquare(const BandField& band, int r1, int c1, int r2, int c2) {
  Mark(band, r1, c1);
  Mark(band, r1, c2);
  Mark(band, r2, c1);
  Mark(band, r2, c2);
}

// The two cells behind the i-th, as bits where they reach the score: by arithmetic, since a jump
// would go wrong as often as not.
MAROVIA_INLINE std::uint64_t RaiseNextTwo(const BandField& band, std::uint8_t* scores, int i,
                                          int least) {
  RaiseOne(scores[i + 1], band.nextCol);
  RaiseOne(scores[i + 2], band.twoCols);
  const int below = least - 1;
  const std::uint64_t reached = static_cast<std::uint32_t>(((below - scores[i + 1]) >> 31 & 2) |
                                                           ((below - scores[i + 2]) >> 31 & 4));
  return reached << i;
}

// The four children from (r, c) on by 2, and by 1 the cells at distance 1 and 2 straight beside
// their square.
MAROVIA_INLINE void RaiseFiner(BandField& band, int r, int c) {
  constexpr Raise kTwo = {1, 1};
  constexpr Raise kSix = {1, 1, 2, 2, 1, 1};
  const std::ptrdiff_t pitch = band.pitch;
  std::uint8_t* score = band.score + r * pitch + c;
  RaiseScores<std::uint16_t>(score - 2 * pitch, kTwo);
  RaiseScores<std::uint16_t>(score - pitch, kTwo);
  RaiseScores<std::uint64_t>(score - 2, kSix);
  RaiseScores<std::uint64_t>(score + pitch - 2, kSix);
  RaiseScores<std::uint16_t>(score + 2 * pitch, kTwo);
  RaiseScores<std::uint16_t>(score + 3 * pitch, kTwo);
  MarkSquare(band, r - 2, c - 2, r + 3, c + 3);
}

// All but the next two cells of the row.
MAROVIA_INLINE void RaiseAround(BandField& band, int r, int c) {
  const std::ptrdiff_t pitch = band.pitch;
  std::uint8_t* score = band.score + r * pitch + c;
  RaiseOne(score[-2], band.twoCols);
  RaiseOne(score[-1], band.nextCol);
  RaiseOne(score[-2 * pitch], band.twoRows);
  RaiseScores<std::uint32_t>(score - pitch - 1, band.nextRow);
  RaiseScores<std::uint32_t>(score + pitch - 1, band.nextRow);
  RaiseOne(score[2 * pitch], band.twoRows);
  MarkSquare(band, r - 2, c - 2, r + 2, c + 2);
  for (const SamePlace& other : band.same) {
    if (other.band == nullptr) break;
    RaiseOne(other.band->score[r * other.band->pitch + c], other.amount);
    Mark(*other.band, r, c);
  }
  if (band.finer != nullptr) RaiseFiner(*band.finer, 2 * r, 2 * c);
}

}  // namespace marovia
