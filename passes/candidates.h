// What a pass finds, in its order of visiting, with what its symbols say of it.
#pragma once

#include <array>

#include "marovia/grid.h"

#include "passes/bit_planes.h"
#include "passes/found_state.h"
#include "passes/visiting_order.h"

namespace marovia {

// A home and its number, from 1, among the pending homes of the pass: a run is the difference of
// two such numbers, whether or not what lies between them is found in the end.
struct Candidate {
  Home home;
  std::uint32_t number;
  bool negative;
};

// Walks over the candidates of a pass, some thousand at a time: they stay in the cache, and their
// signs, which lie anywhere in memory, are fetched together, before a coder asks for one after the
// other.
class CandidateWalk {
 public:
  // `candidates` are what a pass finds; none is found before.
  CandidateWalk(const HomeSet& candidates, const BitPlanes& planes, const FoundState& found,
                VisitingOrder& order);

  // The next ones; none behind the last.
  std::span<Candidate> Next();

 private:
  // A piece of a stretch: so many words of a set, or blocks.
  static constexpr std::size_t kPieceWords = 16;
  static constexpr std::size_t kPieceBlocks = 256;
  static constexpr std::size_t kMostOfAPiece = 1024;
  static constexpr std::size_t kMost = 2048;
  static constexpr std::size_t kSlack = 4;  // a block always writes four

  void BeginStretch();
  void AppendPiece();
  void AppendInTurn(const Stretch& stretch);
  void AppendHomes(std::span<const Home> homes);
  void AppendBlocks(std::span<const Home> blocks);
  void AppendPendingBlocks(std::span<const Home> blocks);
  void AppendAmong(Home base, std::uint64_t pending, std::uint64_t candidates);
  void Append(Home home, std::uint32_t number) { list_[count_++] = {home, number, false}; }

  const HomeSet& candidates_;
  const BitPlanes& planes_;
  const FoundState& found_;
  VisitingOrder& order_;
  std::size_t stretch_ = 0;
  std::size_t word_ = 0;      // the next one of a stretch that is not ordered
  StretchOrder rest_;         // what is left of one that is
  std::uint32_t passed_ = 0;  // pending homes so far
  std::array<Candidate, kMost + kSlack> list_{};
  std::size_t count_ = 0;
};

}  // namespace marovia
