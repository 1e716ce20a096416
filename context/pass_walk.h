// The passes over a bit plane: the one order in which writer and reader visit coefficients. Lanes
// says how bytes are compared and added, Coder whether decisions are written or read.
//
// A reader whose stream has ended gets a 0 for every decision that is left. That finds nothing and
// changes nothing that the picture is made of, so that the walk looks for the end only once a row.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "base/bits.h"
#include "context/counters.h"
#include "context/field.h"
#include "context/passes.h"
#include "context/range_coder.h"

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

template <class Lanes, class Coder>
class PassWalk {
 public:
  PassWalk(ContextField& field, int plane, Counters& counters, Coder& coder)
      : field_(field),
        planeNumber_(plane),
        found_(field.found),
        old_(field.old),
        closed_(field.closed),
        plane_(field.Plane(plane)),
        counters_(counters),
        coder_(coder) {}

  void Run(Pass pass) {
    switch (pass) {
      case Pass::kSweep10:
        return Sweep(10);
      case Pass::kSweep7:
        return Sweep(7);
      case Pass::kSweep3:
        return Sweep(3);
      case Pass::kSweep1:
        return Sweep(1);
      case Pass::kRefine:
        return Refine();
      case Pass::kTiles:
        return Tiles();
    }
  }

 private:
  static constexpr std::uint64_t Bit(int i) { return std::uint64_t{1} << i; }

  template <class Action>
  void EachBand(Action action) {
    for (BandField& band : field_.Bands()) {
      if (planeNumber_ >= band.shift) action(band);
    }
  }

  // Runs over the marked blocks of all bands with a copy of the coder, which the compiler keeps in
  // registers.
  template <class Action>
  MAROVIA_INLINE void CodeMarkedBlocks(const Action& action) {
    EachBand([&](BandField& band) {
      Coder coder = coder_;
      EachMarkedBlock(band, [&](const BlockPlace& place) MAROVIA_INLINE_LAMBDA {
        action(band, coder, place);
        return !coder.Done();
      });
      coder_ = coder;
    });
  }

  void Sweep(int least) {
    CodeMarkedBlocks([=, this](BandField& band, Coder& coder, const BlockPlace& place)
                         MAROVIA_INLINE_LAMBDA { SweepBlock(band, coder, place, least); });
  }

  // A found cell raises the next two of its row at once: they may be visited because of that. All
  // else that it raises lies behind, or in rows that come later, and waits until the block is done.
  MAROVIA_INLINE void SweepBlock(BandField& band, Coder& coder, const BlockPlace& place,
                                 int least) {
    const std::uint64_t open = ~closed_[place.word];
    std::uint8_t* scores = band.score + place.cell;
    std::uint64_t left = open & Lanes::AtLeast(scores, least);
    if (left == 0) return;
    FindCounters& counters = counters_.find[band.findPlace];
    const std::uint64_t plane = plane_[place.word];
    std::uint64_t visited = 0;
    std::uint64_t hits = 0;
    const auto counterOf = [&](int i) { return &counters[kClassOfScore[scores[i]]]; };
    int i = std::countr_zero(left);
    Counter* counter = counterOf(i);
    while (true) {
      left &= left - 1;
      visited |= Bit(i);
      const int next = std::countr_zero(left);
      Counter* nextCounter = nullptr;
      SignPlace sign{};
      if constexpr (!Coder::kWrites) {
        nextCounter = BeforeJump(counterOf(next));
        sign = BeforeJump(SignPlaceOf(band, place, i));
      }
      const bool hit = coder.Decide(*counter, (plane >> i & 1) != 0);
      if (hit && CodeSign(band, coder, place, i, sign)) {
        hits |= Bit(i);
        left |= open & RaiseNextTwo(band, scores, i, least);
      }
      if (left == 0) break;
      i = hit ? std::countr_zero(left) : next;
      counter = hit || Coder::kWrites ? counterOf(i) : nextCounter;
    }
    closed_[place.word] |= visited;
    if (hits != 0) TakeHits(band, place, hits);
  }

  // The two cells behind the i-th, where they reach the score.
  MAROVIA_INLINE static std::uint64_t RaiseNextTwo(const BandField& band, std::uint8_t* scores,
                                                   int i, int least) {
    RaiseOne(scores[i + 1], band.nextCol);
    RaiseOne(scores[i + 2], band.twoCols);
    const std::uint64_t reached =
        (scores[i + 1] >= least ? 2U : 0U) | (scores[i + 2] >= least ? 4U : 0U);
    return reached << i;
  }

  void TakeHits(BandField& band, const BlockPlace& place, std::uint64_t hits) {
    found_[place.word] |= hits;
    if constexpr (!Coder::kWrites) plane_[place.word] |= hits;
    for (; hits != 0; hits &= hits - 1) {
      const int i = std::countr_zero(hits);
      band.known[place.cell + i] = 1;
      RaiseAround(band, place.r, place.c + i);
    }
  }

  template <class T>
  MAROVIA_INLINE static T BeforeJump(T value) {
    asm volatile("" : "+r"(value));
    return value;
  }

  MAROVIA_INLINE static SignPlace SignPlaceOf(const BandField& band, const BlockPlace& place,
                                              int i) {
    const std::int8_t* sign = band.sign + place.cell + i;
    const auto across = static_cast<std::size_t>(sign[-1] + sign[1] + 2);
    const auto down = static_cast<std::size_t>(sign[-band.pitch] + sign[band.pitch] + 2);
    return kSignPlaces[across][down];
  }

  // Whether the stream still held the sign.
  MAROVIA_INLINE bool CodeSign(BandField& band, Coder& coder, const BlockPlace& place, int i,
                               SignPlace context) {
    std::int8_t* sign = band.sign + place.cell + i;
    if constexpr (Coder::kWrites) context = SignPlaceOf(band, place, i);
    const std::uint32_t opposite = 0U - context.opposite;
    std::uint32_t negative = 0;
    if constexpr (Coder::kWrites) {
      negative = 0U - static_cast<std::uint32_t>(field_.negative[place.word] >> i & 1);
    }
    Counter& counter = counters_.sign[static_cast<std::size_t>(band.kind)][context.place];
    negative = coder.DecideBlindly(counter, 0, negative ^ opposite) ^ opposite;
    if (coder.Ended()) return false;
    *sign = static_cast<std::int8_t>(negative | 1);
    return true;
  }

  // Scores stay below 128: adding words carries nothing from one to the next.
  template <class Word>
  MAROVIA_INLINE static void RaiseScores(std::uint8_t* scores, const Raise& raise) {
    Word word;
    Word added;
    std::memcpy(&word, scores, sizeof word);
    std::memcpy(&added, raise.data(), sizeof added);
    word = static_cast<Word>(word + added);
    std::memcpy(scores, &word, sizeof word);
  }

  MAROVIA_INLINE static void RaiseOne(std::uint8_t& score, std::uint8_t amount) {
    score = static_cast<std::uint8_t>(score + amount);
  }

  static void Mark(const BandField& band, int r, int c) {
    band.marks[(r >> 3) * band.markPitch + (c >> 6)] = 1;
  }

  // The four groups that the corners of a raised square lie in are all that it reaches.
  static void MarkSquare(const BandField& band, int r1, int c1, int r2, int c2) {
    Mark(band, r1, c1);
    Mark(band, r1, c2);
    Mark(band, r2, c1);
    Mark(band, r2, c2);
  }

  // All but the next two cells of the row.
  MAROVIA_INLINE static void RaiseAround(BandField& band, int r, int c) {
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

  // The four children from (r, c) on by 2, and by 1 the cells at distance 1 and 2 straight beside
  // their square.
  MAROVIA_INLINE static void RaiseFiner(BandField& band, int r, int c) {
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

  void Refine() {
    CodeMarkedBlocks([this](BandField& band, Coder& coder, const BlockPlace& place)
                         MAROVIA_INLINE_LAMBDA { RefineBlock(band, coder, place); });
  }

  // The counter of a cell follows from the known values around it. Of those only the left one's may
  // have grown since the block was begun, by one: both counters are worked out beforehand.
  MAROVIA_INLINE void RefineBlock(BandField& band, Coder& coder, const BlockPlace& place) {
    const std::size_t word = place.word;
    std::uint64_t left = old_[word];
    if (left == 0) return;
    std::uint8_t* known = band.known + place.cell;
    RefinementPlaces places;  // NOLINT(*-member-init): written whole
    Lanes::FindPlaces(known, band.pitch, places);
    const std::uint64_t plane = plane_[word];
    std::uint64_t ones = 0;
    std::uint64_t done = 0;
    std::uint64_t grown = 0;
    do {
      const int i = std::countr_zero(left);
      const std::uint64_t bit = left & (0 - left);
      const std::uint32_t besideGrown = 0U - static_cast<std::uint32_t>((grown << 1) >> i & 1);
      const std::uint32_t at = Choose(besideGrown, places.besideGrown[static_cast<std::size_t>(i)],
                                      places.asItIs[static_cast<std::size_t>(i)]);
      const std::uint32_t even = 0U - (at >> 4);
      const std::uint32_t isOne = coder.DecideBlindly(
          counters_.refine[at], even, 0U - static_cast<std::uint32_t>(plane >> i & 1));
      if (coder.Ended()) break;
      const std::uint64_t one = bit & (0 - std::uint64_t{isOne & 1});
      ones |= one;
      grown |= one & (0 - std::uint64_t{~even & 1});
      done |= bit;
      left ^= bit;
    } while (left != 0);
    Lanes::AddBits(known, grown);
    if constexpr (!Coder::kWrites) plane_[word] |= ones;
    old_[word] &= ~done;
  }

  void Tiles() {
    EachBand([this](BandField& band) {
      Coder coder = coder_;
      for (int row = 0; row < band.GroupRows() && !coder.Done(); ++row) {
        for (int block = 0; block < band.blocks; ++block) TileGroup(band, coder, row, block);
      }
      coder_ = coder;
    });
  }

  using TileBits = std::array<std::uint64_t, 8>;  // of a group: bit 8 * row + column of each tile

  MAROVIA_INLINE void TileGroup(BandField& band, Coder& coder, int groupRow, int block) {
    const std::size_t word = band.WordsOfGroup(groupRow, block);
    TileBits members;  // NOLINT(*-member-init): written whole where it is used
    if (!Lanes::TilesOfOpen(closed_ + word, members)) return;
    TileBits plane{};
    if constexpr (Coder::kWrites) Lanes::TilesOf(plane_ + word, plane);
    TileBits scored = Scored(band, groupRow, block);
    for (int tile = 0; tile < 8; ++tile) {
      const auto t = static_cast<std::size_t>(tile);
      if (members[t] == 0) continue;
      Counter& counter = counters_.tile[(members[t] & scored[t]) != 0 ? 1 : 0];
      if (!coder.template Decide<kTilePace>(counter, (members[t] & plane[t]) != 0)) continue;
      FindInTile(band, coder, groupRow, kBlock * block + 8 * tile, members[t], plane[t]);
      scored = Scored(band, groupRow, block);
    }
  }

  MAROVIA_INLINE TileBits Scored(const BandField& band, int groupRow, int block) {
    TileBits tiles{};
    if (band.MarksOf(groupRow)[block] == 0) return tiles;
    TileBits rows;  // NOLINT(*-member-init): written whole
    for (int r = 0; r < kGroupRows; ++r) {
      rows[static_cast<std::size_t>(r)] =
          kGroupRows * groupRow + r < band.rows
              ? Lanes::AtLeast(band.score + band.Cell(kGroupRows * groupRow + r, block), 1)
              : 0;
    }
    Lanes::TilesOf(rows.data(), tiles);
    return tiles;
  }

  // The last member is found without a decision where none before it was: some member is.
  void FindInTile(BandField& band, Coder& coder, int groupRow, int col, std::uint64_t members,
                  std::uint64_t plane) {
    FindCounters& counters = counters_.find[band.findPlace];
    const int block = col / kBlock;
    bool someFound = false;
    for (; members != 0; members &= members - 1) {
      const int i = std::countr_zero(members);
      const int r = kGroupRows * groupRow + i / 8;
      const int inBlock = col % kBlock + i % 8;
      const BlockPlace place{r, kBlock * block, band.Word(r, block), band.Cell(r, block)};
      const bool implied = !someFound && (members & (members - 1)) == 0;
      std::uint8_t* scores = band.score + place.cell;
      Counter& counter = counters[kClassOfScore[scores[inBlock]]];
      if (!implied && !coder.Decide(counter, (plane >> i & 1) != 0)) continue;
      if (!CodeSign(band, coder, place, inBlock, SignPlaceOf(band, place, inBlock))) return;
      someFound = true;
      RaiseNextTwo(band, scores, inBlock, 0);
      TakeHits(band, place, Bit(inBlock));
    }
  }

  ContextField& field_;
  int planeNumber_;
  std::uint64_t* found_;
  std::uint64_t* old_;
  std::uint64_t* closed_;
  std::uint64_t* plane_;
  Counters& counters_;
  Coder& coder_;
};

}  // namespace marovia
