// Wavelet transforms of lines by lifting, after W. Sweldens, "The lifting scheme" (1996), and of
// integers to integers after A. Calderbank, I. Daubechies, W. Sweldens and B.-L. Yeo (1998).
//
// A line of N samples is split into its even samples (low) and its odd ones (high); each lifting
// step then adds to one of them a function of its neighbours in the other. Beyond its ends a line
// is reflected about its first and last sample, which every step preserves: it is enough to reflect
// the neighbours asked for. Samples are kept in single precision; each step is computed in double
// precision and rounded once, when it is stored. The integer wavelets round what they add to a
// whole number, of two equally near to the even one.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "marovia/types.h"

namespace marovia {

enum class Direction { kForward, kInverse };
enum class Band { kLow, kHigh };

// The ways in which a step changes a sample t, given the other band's samples around it: b and c
// next to it, a and d next to those.
enum class StepRule {
  kWeighted,  // t + (b + c) * weight
  kRounded,   // t + Round((b + c) * weight)
  kCurved,    // t + Round((2c - b - d) * weight + (2b - a - c) * weight)
  kTimes,     // t * weight
  kOver,      // t / weight
};

struct LiftingStep {
  Band target;
  StepRule rule;
  double weight;
  // When lines are lifted against each other row after row, this step runs `lag` samples of its
  // band behind the first: far enough that its neighbours are ready, and that no later step of a
  // neighbour has begun.
  int lag;
};

std::span<const LiftingStep> LiftingSteps(WaveletKind wavelet, Direction direction);

// What the rounded steps compute in. Single precision gives the same where all samples are
// multiples of a power of two with few enough bits between it and the largest of them
// (InversePrecision in wavelet/transform.cpp); the weighted steps are in double precision always.
enum class Precision { kSingle, kDouble };

// Applies one step to targets that lie one after another; neighbours[i] are a, b, c and d of the
// targets (b and c alone where the rule needs no more). No neighbour overlaps a target.
// Error kOverflow where a value to be rounded leaves 32 bits.
template <class Sample>
using Neighbours = std::array<const Sample*, 4>;
void ApplyStep(const LiftingStep& step, Precision precision, std::span<float> targets,
               const Neighbours<float>& neighbours);

// The rounded steps on whole numbers, in sums modulo 2^32: nothing can overflow, and any bits come
// back that a forward step was given. The integer wavelets have no other steps.
void ApplyStep(const LiftingStep& step, Precision precision, std::span<std::int32_t> targets,
               const Neighbours<std::int32_t>& neighbours);

// The index of a sample of a line of `length` samples, reflected at both ends as often as needed.
inline int Reflect(int index, int length) {
  if (length == 1) return 0;
  const int last = length - 1;
  while (index < 0 || index > last) index = index < 0 ? -index : 2 * last - index;
  return index;
}

// A line split into its two bands, with room around each for the samples reflected at the ends.
template <class Sample>
class BasicSplitLine {
 public:
  explicit BasicSplitLine(int longest);

  // Makes room for a line of `length` samples: Low() then has the larger half.
  void Resize(int length);
  std::span<Sample> Low() {
    return std::span(low_).subspan(kMargin, static_cast<std::size_t>(lowCount_));
  }
  std::span<Sample> High() {
    return std::span(high_).subspan(kMargin, static_cast<std::size_t>(highCount_));
  }

  // To and from the line in band order (all low samples, then all high ones), as PermPlace and
  // InvPermPlace say.
  void StoreInBandOrder(std::span<Sample> line) const;
  void LoadFromBandOrder(std::span<const Sample> line);

  // The line's lifting steps, each over the whole line. Lines of one sample are left as they are.
  void Lift(std::span<const LiftingStep> steps, Precision precision);

 private:
  static constexpr int kMargin = 2;  // samples that a step reaches beyond either end

  // The samples that the neighbours of the other band's ends ask for.
  void ReflectEnds(Band band);

  int length_ = 0;
  int lowCount_ = 0;
  int highCount_ = 0;
  std::vector<Sample> low_;
  std::vector<Sample> high_;
};

using SplitLine = BasicSplitLine<float>;
extern template class BasicSplitLine<float>;
extern template class BasicSplitLine<std::int32_t>;

// The place of the low (high) sample k in a line of `length` samples in band order (all low
// samples, then all high ones), and the one where the way back looks for it. They differ for odd
// lengths, where the last low sample stays last, but is looked for as if the length were even: part
// of the file format.
int PermPlace(Band band, int k, int length);
int InvPermPlace(Band band, int k, int length);

}  // namespace marovia
