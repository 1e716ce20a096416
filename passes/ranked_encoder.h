// The passes of a compressor that visits the most probable coefficient next.
#pragma once

#include <algorithm>
#include <deque>

#include "passes/bit_planes.h"
#include "passes/ranked_order.h"
#include "passes/run.h"

namespace marovia {

template <class Symbols>
class RankedEncoder {
 public:
  RankedEncoder(const BitPlanes& planes, const RestingOrder& resting, const Symbols& symbols,
                const EncoderPlan& plan)
      : planes_(planes),
        order_(resting),
        symbols_(symbols),
        plan_(plan),
        candidates_(planes.HomeCount()) {}

  // Pass number `pass`, from 1 without a gap. False where the budget ended it.
  bool Run(int pass) {
    planes_.FoundIn(pass, candidates_);
    CountCandidates();
    if (pass == 1 && EndsBeforeFirstSymbol()) return false;
    const std::size_t before = refinements_.size();
    search_.run = 0;
    waiting_ = order_.Pending();
    if (candidateCount_ > 0) order_.Visit(search_, [this](Home home) { return Send(home); });
    return EndPart() && Refine(before, pass);
  }

  // After the last pass: closes the stream.
  void Finish() { symbols_.Finish(); }

  [[nodiscard]] std::int64_t FoundCount() const {
    return static_cast<std::int64_t>(refinements_.size());
  }
  [[nodiscard]] std::int64_t BitsSent() const { return symbols_.BitsSent(); }

 private:
  struct Search {
    const HomeSet* candidates;  // what this pass finds as long as the budget lasts
    std::uint32_t run = 0;      // homes visited since the last one found

    MAROVIA_INLINE bool Finds(Home home, unsigned visited) {
      run += visited;
      return (visited & (candidates->Has(home) ? 1U : 0)) != 0;
    }
    MAROVIA_INLINE int FirstOf(std::size_t word, std::uint64_t homes) {
      const std::uint64_t found = homes & candidates->Word(word);
      const std::uint64_t upToFirst = found ^ (found - 1);
      run += static_cast<std::uint32_t>(CountBits(homes & upToFirst));
      return found == 0 ? 64 : std::countr_zero(found);
    }
  };

  // False behind the last one too: what is visited then is known by its number alone.
  MAROVIA_INLINE bool Send(Home home) {
    symbols_.Found(search_.run, planes_.Negative(home));
    refinements_.push_back(planes_.Refinements(home));
    waiting_ -= search_.run;
    search_.run = 0;
    if (Spent()) return false;
    candidates_.Remove(home);
    --candidateCount_;
    if (SwitchesNow()) CountCandidates();
    return candidateCount_ > 0;
  }

  [[nodiscard]] bool Spent() const { return symbols_.BitsSpent() >= plan_.budget; }

  // A budget that the header's charge uses up ends the run where a first home is passed by.
  bool EndsBeforeFirstSymbol() {
    return plan_.testBeforeFirstSymbol && Spent() && !candidates_.Has(0);
  }

  // From the switch point on only what lies in the region is found; what does not stays pending.
  [[nodiscard]] bool SwitchesNow() const {
    return !regionOnly_ && symbols_.BitsSent() >= plan_.switchPoint;
  }
  void CountCandidates() {
    regionOnly_ = regionOnly_ || SwitchesNow();
    candidateCount_ = 0;
    for (std::size_t i = 0; i < candidates_.WordCount(); ++i) {
      if (candidates_.Word(i) == 0) continue;
      if (regionOnly_) candidates_.Word(i) &= plan_.region->Word(i);
      candidateCount_ += CountBits(candidates_.Word(i));
    }
  }

  // Two more than the pending homes left: no decoder takes that for a run.
  bool EndPart() {
    if (Spent()) return false;
    symbols_.EndOfPass(static_cast<std::uint32_t>(waiting_) + 2);
    return !Spent();
  }

  bool Refine(std::size_t count, int pass) {
    return RunOnCopy(symbols_, [&](Symbols& symbols) MAROVIA_INLINE_LAMBDA {
      auto bits = refinements_.begin();
      for (std::size_t i = 0; i < count; ++i, ++bits) {
        symbols.Refine((*bits >> (BitPlanes::kRefinementPlace - pass) & 1) != 0);
        if (symbols.BitsSpent() >= plan_.budget) return false;
      }
      return true;
    });
  }

  const BitPlanes& planes_;
  RankedOrder order_;
  Symbols symbols_;
  EncoderPlan plan_;

  HomeSet candidates_;
  Search search_{&candidates_};
  int candidateCount_ = 0;
  // Of what is found, in the order of discovery; grows without being copied.
  std::deque<std::uint32_t> refinements_;
  std::int64_t waiting_ = 0;  // homes pending behind the last one found in this pass
  bool regionOnly_ = false;
};

}  // namespace marovia
