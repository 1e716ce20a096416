// What a pass finds, in its order of visiting.
#pragma once

#include "marovia/grid.h"

#include "passes/found_state.h"

namespace marovia {

// A home and its number, from 1, among the pending homes of the pass: a run is the difference of
// two such numbers, whether or not what lies between them is found in the end.
struct Candidate {
  Home home;
  std::uint32_t number;
};

class CandidateList {
 public:
  // All homes of `candidates`, none of which is found before this pass.
  void Fill(const HomeSet& candidates, const FoundState& found, VisitingOrder& order);

  [[nodiscard]] std::span<const Candidate> Candidates() const {
    return std::span(list_).first(count_);
  }

 private:
  void MakeRoom();
  void AppendInTurn(const Stretch& stretch);
  void AppendInOrder(const StretchOrder& order);
  void AppendBlocks(std::span<const Home> blocks);
  void AppendPendingBlocks(std::span<const Home> blocks);
  void AppendAmong(Home base, std::uint64_t pending, std::uint64_t candidates);
  void Append(Home home, std::uint32_t number) { list_[count_++] = {home, number}; }

  const HomeSet* candidates_ = nullptr;
  const FoundState* found_ = nullptr;
  std::uint32_t passed_ = 0;  // pending homes so far
  Buffer<Candidate> list_;
  std::size_t count_ = 0;
};

}  // namespace marovia
