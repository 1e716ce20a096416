// The passes over a bit plane: the one order in which writer and reader visit coefficients. Lanes
// says how bytes are compared and added, Coder whether decisions are written or read.
//
// A reader whose stream has ended gets a 0 for every decision that is left. That finds nothing and
// changes nothing that the picture is made of, so that the walk looks for the end only once a row.
#pragma once

#include <array>
#include <bit>
#include <cstdint>

#include "base/bits.h"
#include "context/block_walk.h"
#include "context/counters.h"
#include "context/field.h"
#include "context/passes.h"
#include "context/raises.h"
#include "context/range_coder.h"

namespace marovia {

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
      if (!coder.Decide(*counter, (plane >> i & 1) != 0)) {
        if (left == 0) break;
        i = next;
        counter = Coder::kWrites ? counterOf(i) : nextCounter;
        continue;
      }
      if (CodeSign(band, coder, place, i, sign)) {
        hits |= Bit(i);
        left |= open & RaiseNextTwo(band, scores, i, least);
      }
      if (left == 0) break;
      i = std::countr_zero(left);
      counter = counterOf(i);
    }
    closed_[place.word] |= visited;
    if (hits != 0) TakeHits(band, place, hits);
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
