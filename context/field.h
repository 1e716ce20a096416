// What is known of every coefficient while a file is coded: bytes for what neighbours ask, bits for
// what passes walk over.
//
// A block is 64 cells of a row, one word of a mask; bit i is the cell of column i. A group is eight
// rows of a block, whose eight words lie one after another: byte t of each is a row of its tile t.
// Around a band's bytes lies a border that raised scores may fall into.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <span>
#include <vector>

#include "context/context_bands.h"

namespace marovia {

inline constexpr int kBlock = 64;
inline constexpr int kGroupRows = 8;

// Memory that begins as zeros, which the system hands out without writing them.
class ZeroedMemory {
 public:
  ZeroedMemory() = default;
  explicit ZeroedMemory(std::size_t size);
  [[nodiscard]] std::byte* Data() const { return static_cast<std::byte*>(bytes_.get()); }

 private:
  struct Free {
    void operator()(void* bytes) const { std::free(bytes); }  // NOLINT(*-no-malloc,*-owning-memory)
  };
  std::unique_ptr<void, Free> bytes_;
};

struct BandField;

// A band whose scores rise where something is found at the same place of another.
struct SamePlace {
  BandField* band = nullptr;
  std::uint8_t amount = 0;
};

// Eight neighbouring scores that rise together, from the left.
using Raise = std::array<std::uint8_t, 8>;

struct BandField : ContextBand {
  // Bytes of the cell (r, c) lie at r * pitch + c.
  std::ptrdiff_t pitch = 0;
  std::uint8_t* score = nullptr;
  std::uint8_t* known = nullptr;
  std::int8_t* sign = nullptr;  // -1, 1, or 0: not found

  // One byte a group, set where a score may be above 0; those around the band are never read.
  std::uint8_t* marks = nullptr;
  std::ptrdiff_t markPitch = 0;

  int blocks = 0;
  std::size_t firstWord = 0;        // of the band in every mask
  std::uint64_t beyondLast = 0;     // the cells of a row's last block that are no columns
  std::size_t findPlace = 0;        // of its counters
  std::uint8_t nextCol = 0;         // what a found cell raises the cell beside it by,
  std::uint8_t twoCols = 0;         // the one beside that,
  std::uint8_t twoRows = 0;         // and that two rows away
  Raise nextRow{};                  // in the rows next to it, from one column before it
  std::array<SamePlace, 3> same{};  // those with a band, then the others
  BandField* finer = nullptr;       // the band of its kind one level finer

  [[nodiscard]] int GroupRows() const { return (rows + kGroupRows - 1) / kGroupRows; }
  [[nodiscard]] std::size_t WordsOfGroup(int groupRow, int block) const {
    return firstWord + (static_cast<std::size_t>(groupRow) * static_cast<std::size_t>(blocks) +
                        static_cast<std::size_t>(block)) *
                           kGroupRows;
  }
  [[nodiscard]] std::size_t Word(int r, int block) const {
    return WordsOfGroup(r / kGroupRows, block) + static_cast<std::size_t>(r % kGroupRows);
  }
  [[nodiscard]] std::ptrdiff_t Cell(int r, int block) const {
    return r * pitch + std::ptrdiff_t{kBlock} * block;
  }
  [[nodiscard]] std::uint8_t* MarksOf(int groupRow) const { return marks + groupRow * markPitch; }
  // The cells of a block that are no columns of the band.
  [[nodiscard]] std::uint64_t Beyond(int block) const {
    return block == blocks - 1 ? beyondLast : 0;
  }
};

class ContextField {
 public:
  // Room for `planes` bit planes.
  ContextField(const ContextHeader& header, int planes);

  std::span<BandField> Bands() { return bands_; }
  [[nodiscard]] std::uint64_t* Plane(int plane) const {
    return planes_ + static_cast<std::size_t>(plane) * words_;
  }
  [[nodiscard]] std::size_t Words() const { return words_; }
  [[nodiscard]] std::int64_t FoundCount() const;

  // Masks, one bit a cell. Cells beyond a band are closed, and nothing else.
  std::uint64_t* found = nullptr;
  std::uint64_t* old = nullptr;       // found before this plane, and not refined in it
  std::uint64_t* closed = nullptr;    // found, or visited in this plane
  std::uint64_t* negative = nullptr;  // a writer's

 private:
  // Gives every array its place from `memory` on; returns how many bytes that takes, which a null
  // memory is enough for.
  std::size_t LayOut(std::byte* memory, int planes);
  void Connect(int levels);
  void CloseBeyond(const BandField& band) const;

  std::vector<BandField> bands_;
  std::size_t words_ = 0;
  std::uint64_t* planes_ = nullptr;
  ZeroedMemory memory_;
};

}  // namespace marovia
