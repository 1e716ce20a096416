// The passes of every compressor.
//
// A pass visits the homes that are not yet found, the pending ones, and sends for each that it
// finds how many pending ones it skipped and the sign; then an end of pass; then one bit for each
// home found in an earlier pass. What a pass finds is known beforehand (BitPlanes), so a run is the
// difference of two numbers among the pending homes: nothing is visited one by one. All that a
// coder is to be told is collected before it begins: its symbols form a chain, in which a wait for
// memory would be added to every one.
#pragma once

#include "passes/bit_planes.h"
#include "passes/candidates.h"
#include "passes/found_state.h"
#include "passes/run.h"
#include "passes/visiting_order.h"

namespace marovia {

template <class Symbols>
class PassEncoder {
 public:
  PassEncoder(const BitPlanes& planes, VisitingOrder& order, const Symbols& symbols,
              const EncoderPlan& plan)
      : planes_(planes),
        order_(order),
        symbols_(symbols),
        plan_(plan),
        found_(order),
        candidates_(planes.HomeCount()) {}

  // Pass number `pass`, from 1 without a gap. False where the budget ended it.
  bool Run(int pass) {
    if (pass > 1) {
      found_.Settle();
      order_.Rebuild(found_.Before());
    }
    planes_.FoundIn(pass, candidates_);
    return SignificancePass(pass) && RefinementPass(pass);
  }

  // After the last pass: closes the stream.
  void Finish() { symbols_.Finish(); }

  [[nodiscard]] std::int64_t FoundCount() const { return found_.Count(); }
  [[nodiscard]] std::int64_t BitsSent() const { return symbols_.BitsSent(); }

 private:
  [[nodiscard]] bool Spent(const Symbols& symbols) const {
    return symbols.BitsSpent() >= plan_.budget;
  }

  // From the switch point on only what lies in the region is found; what does not stays pending.
  MAROVIA_INLINE bool MayFind(const Symbols& symbols, Home home) {
    if (plan_.region == nullptr) return true;
    regionOnly_ = regionOnly_ || symbols.BitsSent() >= plan_.switchPoint;
    return !regionOnly_ || plan_.region->Has(home);
  }

  // A budget that the header's charge uses up ends the run where a first home is passed by.
  bool EndsBeforeFirstSymbol() {
    return plan_.testBeforeFirstSymbol && Spent(symbols_) &&
           !(candidates_.Has(0) && MayFind(symbols_, 0));
  }

  bool SignificancePass(int pass) {
    if (pass == 1 && EndsBeforeFirstSymbol()) return false;
    CandidateWalk walk(candidates_, planes_, found_, order_);
    last_ = 0;
    for (auto list = walk.Next(); !list.empty(); list = walk.Next()) {
      const std::size_t sent = SendFound(list);
      for (const Candidate& candidate : list.first(sent)) found_.Take(candidate.home);
      if (sent > 0 && Spent(symbols_)) return false;
    }
    // Two more than the pending homes left: no decoder takes that for a run.
    symbols_.EndOfPass(static_cast<std::uint32_t>(found_.Pending()) - last_ + 2);
    return !Spent(symbols_);
  }

  // Until the budget is spent. Those that are sent come to the front of the list, which is shorter
  // where a region lets not all be found; returns their number.
  std::size_t SendFound(std::span<Candidate> list) {
    std::size_t sent = 0;
    std::uint32_t last = last_;
    RunOnCopy(symbols_, [&](Symbols& symbols) MAROVIA_INLINE_LAMBDA {
      for (const Candidate candidate : list) {
        if (!MayFind(symbols, candidate.home)) continue;
        symbols.Found(candidate.number - last, candidate.negative);
        last = candidate.number;
        list[sent++] = candidate;
        if (Spent(symbols)) return false;
      }
      return true;
    });
    last_ = last;
    return sent;
  }

  bool RefinementPass(int pass) {
    if (pass == 1) return true;
    return found_.ForFoundBefore(order_, refined_, [&](std::span<const Home> homes) {
      moves_.resize(homes.size());
      for (std::size_t i = 0; i < homes.size(); ++i)
        moves_[i] = planes_.Moves(homes[i], pass) ? 1 : 0;
      return RunOnCopy(symbols_, [&](Symbols& symbols) MAROVIA_INLINE_LAMBDA {
        for (const std::uint8_t moves : moves_) {
          symbols.Refine(moves != 0);
          if (Spent(symbols)) return false;
        }
        return true;
      });
    });
  }

  const BitPlanes& planes_;
  VisitingOrder& order_;
  Symbols symbols_;
  EncoderPlan plan_;

  FoundState found_;
  HomeSet candidates_;      // what this pass finds as long as the budget lasts
  std::uint32_t last_ = 0;  // the number of the last one found
  HomeList refined_;        // part of what this pass refines
  Buffer<std::uint8_t> moves_;
  bool regionOnly_ = false;
};

}  // namespace marovia
