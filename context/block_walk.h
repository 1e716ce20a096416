// The blocks that a pass has to look at.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "base/bits.h"
#include "context/field.h"

namespace marovia {

// A block of a band: its row, its first column, and where masks and bytes have it.
struct BlockPlace {
  int r;
  int c;
  std::size_t word;
  std::ptrdiff_t cell;
};

// action(place) in raster order for the blocks of marked groups, until it returns false. A row of
// groups without a mark stays so: what raises scores in it, or above it, has been there before.
template <class Action>
MAROVIA_INLINE void EachMarkedBlock(const BandField& band, const Action& action) {
  for (int first = 0; first < band.rows; first += kGroupRows) {
    const std::uint8_t* marks = band.MarksOf(first / kGroupRows);
    if (std::memchr(marks, 1, static_cast<std::size_t>(band.blocks)) == nullptr) continue;
    const int end = std::min(first + kGroupRows, band.rows);
    BlockPlace row{first, 0, band.Word(first, 0), band.Cell(first, 0)};
    for (; row.r < end; ++row.r, ++row.word, row.cell += band.pitch) {
      BlockPlace place = row;
      for (int block = 0; block < band.blocks; ++block) {
        if (marks[block] != 0 && !action(place)) return;
        place.c += kBlock;
        place.cell += kBlock;
        place.word += kGroupRows;
      }
    }
  }
}

// What was found stays closed, all else opens; what is known of the found doubles.
template <class Lanes>
void BeginPlane(ContextField& field, int plane) {
  for (const BandField& band : field.Bands()) {
    if (plane < band.shift) continue;
    EachMarkedBlock(band, [&](const BlockPlace& place) {
      const std::uint64_t found = field.found[place.word];
      field.old[place.word] = found;
      field.closed[place.word] = found | band.Beyond(place.c / kBlock);
      if (found != 0) Lanes::DoubleKnown(band.known + place.cell);
      return true;
    });
  }
}

}  // namespace marovia
