#include "wavelet/lifting.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <vector>

#include "marovia/error.h"

#include "base/bits.h"

namespace marovia {
namespace {

// The constants of the 9/7 wavelet are held in single precision and widened.
constexpr double kA = -1.586134342F;
constexpr double kB = -0.05298011854F;
constexpr double kC = 0.8829111F;
constexpr double kD = 0.44350687F;
constexpr double kK = 1.1496044F;

using enum Band;
using enum StepRule;

constexpr LiftingStep kForward97[] = {{kHigh, kWeighted, kA, 0}, {kLow, kWeighted, kB, 0},
                                      {kHigh, kWeighted, kC, 1}, {kLow, kWeighted, kD, 1},
                                      {kLow, kTimes, kK, 1},     {kHigh, kOver, kK, 2}};
constexpr LiftingStep kInverse97[] = {{kLow, kOver, kK, 0},      {kHigh, kTimes, kK, 0},
                                      {kLow, kWeighted, -kD, 0}, {kHigh, kWeighted, -kC, 1},
                                      {kLow, kWeighted, -kB, 1}, {kHigh, kWeighted, -kA, 2}};
constexpr LiftingStep kForward53[] = {{kHigh, kRounded, -0.5, 0}, {kLow, kRounded, 0.25, 0}};
constexpr LiftingStep kInverse53[] = {{kLow, kRounded, -0.25, 0}, {kHigh, kRounded, 0.5, 1}};
constexpr LiftingStep kForward22[] = {
    {kHigh, kRounded, -0.5, 0}, {kLow, kRounded, 0.25, 0}, {kHigh, kCurved, -1.0 / 16, 2}};
constexpr LiftingStep kInverse22[] = {
    {kHigh, kCurved, 1.0 / 16, 0}, {kLow, kRounded, -0.25, 1}, {kHigh, kRounded, 0.5, 2}};

// The arithmetic of a step. Adding and subtracting kRounder rounds a value below kRounder / 4 to a
// whole number, half to even, in the rounding mode that every program starts in.
template <class Real>
struct Arithmetic;
template <>
struct Arithmetic<double> {
  using Sign = std::int64_t;
  static constexpr double kRounder = 6755399441055744.0;  // 1.5 * 2^52
  static constexpr double kMost = 2147483647.4999995;     // the last below 2^31 - 0.5
};
template <>
struct Arithmetic<float> {
  using Sign = std::int32_t;
  static constexpr float kRounder = 12582912.0F;  // 1.5 * 2^23
  static constexpr float kMost = 4194304.0F;      // 2^22; single precision is exact far below it
};

// Adds to every target what added(i) gives, rounded; whether all of that was small enough. The
// rounding is symmetric, so a step and its inverse add opposite numbers.
template <class Real, class Added>
[[gnu::always_inline]] inline bool AddRounded(float* __restrict t, std::size_t count, Added added) {
  using A = Arithmetic<Real>;
  typename A::Sign tooLarge = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const Real value = added(i);
    tooLarge |= std::bit_cast<typename A::Sign>(A::kMost - std::fabs(value));
    const auto rounded = static_cast<float>((value + A::kRounder) - A::kRounder);
    t[i] = static_cast<float>(static_cast<Real>(t[i]) + static_cast<Real>(rounded));
  }
  return tooLarge >= 0;
}

template <class Real>
[[gnu::always_inline]] inline bool AddRoundedSum(float* __restrict t, std::size_t count,
                                                 const Neighbours& n, double weight) {
  const float* b = n[1];
  const float* c = n[2];
  const auto w = static_cast<Real>(weight);
  return AddRounded<Real>(t, count, [=](std::size_t i) {
    return (static_cast<Real>(b[i]) + static_cast<Real>(c[i])) * w;
  });
}

template <class Real>
[[gnu::always_inline]] inline bool AddCurvature(float* __restrict t, std::size_t count,
                                                const Neighbours& n, double weight) {
  const float* pa = n[0];
  const float* pb = n[1];
  const float* pc = n[2];
  const float* pd = n[3];
  const auto w = static_cast<Real>(weight);
  return AddRounded<Real>(t, count, [=](std::size_t i) {
    const Real a = pa[i];
    const Real b = pb[i];
    const Real c = pc[i];
    const Real d = pd[i];
    return (c + c - b - d) * w + (b + b - a - c) * w;
  });
}

MAROVIA_WIDE_VECTORS bool RoundedInDouble(std::span<float> t, const Neighbours& n, double weight) {
  return AddRoundedSum<double>(t.data(), t.size(), n, weight);
}
MAROVIA_WIDE_VECTORS bool RoundedInSingle(std::span<float> t, const Neighbours& n, double weight) {
  return AddRoundedSum<float>(t.data(), t.size(), n, weight);
}
MAROVIA_WIDE_VECTORS bool CurvedInDouble(std::span<float> t, const Neighbours& n, double weight) {
  return AddCurvature<double>(t.data(), t.size(), n, weight);
}
MAROVIA_WIDE_VECTORS bool CurvedInSingle(std::span<float> t, const Neighbours& n, double weight) {
  return AddCurvature<float>(t.data(), t.size(), n, weight);
}

MAROVIA_WIDE_VECTORS void AddWeighted(std::span<float> targets, const Neighbours& n,
                                      double weight) {
  float* __restrict t = targets.data();
  const float* b = n[1];
  const float* c = n[2];
  const std::size_t count = targets.size();
  for (std::size_t i = 0; i < count; ++i) {
    t[i] = static_cast<float>((static_cast<double>(b[i]) + c[i]) * weight + t[i]);
  }
}

// A product or quotient of two floats rounds to the same float from double as at once.
MAROVIA_WIDE_VECTORS void Times(std::span<float> targets, float weight) {
  for (float& t : targets) t *= weight;
}

MAROVIA_WIDE_VECTORS void Over(std::span<float> targets, float weight) {
  for (float& t : targets) t /= weight;
}

void CheckSmall(bool small) {
  if (!small) Fail(Errc::kOverflow, "Overflow: a lifting step leaves its range.");
}

void LiftWhole(WaveletKind wavelet, Direction direction, std::span<float> line) {
  const int length = static_cast<int>(line.size());
  SplitLine split(length);
  split.Resize(length);
  for (std::size_t i = 0; i < line.size(); ++i) {
    (i % 2 == 0 ? split.Low() : split.High())[i / 2] = line[i];
  }
  split.Lift(LiftingSteps(wavelet, direction), Precision::kDouble);
  for (std::size_t i = 0; i < line.size(); ++i) {
    line[i] = (i % 2 == 0 ? split.Low() : split.High())[i / 2];
  }
}

}  // namespace

std::span<const LiftingStep> LiftingSteps(WaveletKind wavelet, Direction direction) {
  const bool forward = direction == Direction::kForward;
  switch (wavelet) {
    case WaveletKind::kDaub97:
      return forward ? std::span(kForward97) : std::span(kInverse97);
    case WaveletKind::kInteger53:
      return forward ? std::span<const LiftingStep>(kForward53)
                     : std::span<const LiftingStep>(kInverse53);
    case WaveletKind::kInteger22:
      break;
  }
  return forward ? std::span(kForward22) : std::span(kInverse22);
}

void ApplyStep(const LiftingStep& step, Precision precision, std::span<float> targets,
               const Neighbours& neighbours) {
  const double weight = step.weight;
  const bool single = precision == Precision::kSingle;
  switch (step.rule) {
    case kWeighted:
      return AddWeighted(targets, neighbours, weight);
    case kRounded:
      return CheckSmall(single ? RoundedInSingle(targets, neighbours, weight)
                               : RoundedInDouble(targets, neighbours, weight));
    case kCurved:
      return CheckSmall(single ? CurvedInSingle(targets, neighbours, weight)
                               : CurvedInDouble(targets, neighbours, weight));
    case kTimes:
      return Times(targets, static_cast<float>(weight));
    case kOver:
      return Over(targets, static_cast<float>(weight));
  }
}

SplitLine::SplitLine(int longest)
    : low_(static_cast<std::size_t>((longest + 1) / 2 + 2 * kMargin)),
      high_(static_cast<std::size_t>(longest / 2 + 2 * kMargin)) {}

void SplitLine::Resize(int length) {
  length_ = length;
  lowCount_ = (length + 1) / 2;
  highCount_ = length / 2;
}

void SplitLine::ReflectEnds(Band band) {
  const bool isLow = band == kLow;
  float* samples = (isLow ? Low() : High()).data();
  const int count = isLow ? lowCount_ : highCount_;
  const int odd = isLow ? 0 : 1;
  for (int k = 1; k <= int{kMargin}; ++k) {
    samples[-k] = samples[Reflect(odd - 2 * k, length_) / 2];
    const int beyond = count + k - 1;
    samples[beyond] = samples[Reflect(2 * beyond + odd, length_) / 2];
  }
}

void SplitLine::Lift(std::span<const LiftingStep> steps, Precision precision) {
  if (length_ < 2) return;
  for (const LiftingStep& step : steps) {
    if (step.rule != kTimes && step.rule != kOver) {
      ReflectEnds(step.target == kHigh ? kLow : kHigh);
    }
    const float* low = Low().data();
    const float* high = High().data();
    if (step.target == kHigh) {
      ApplyStep(step, precision, High(), {low - 1, low, low + 1, low + 2});
    } else {
      ApplyStep(step, precision, Low(), {nullptr, high - 1, high, nullptr});
    }
  }
}

void SymmWavTr2D(WaveletKind wavelet, std::span<float> line) {
  LiftWhole(wavelet, Direction::kForward, line);
}

void InvSymmWavTr2D(WaveletKind wavelet, std::span<float> line) {
  LiftWhole(wavelet, Direction::kInverse, line);
}

int PermPlace(Band band, int k, int length) {
  const int half = length / 2;
  if (band == kHigh) return half + k;
  return k < half ? k : length - 1;
}

int InvPermPlace(Band band, int k, int length) {
  const int half = length / 2;
  if (band == kHigh) return half + k;
  return length % 2 == 0 ? k : 2 * k;
}

void Perm(std::span<float> line) {
  const int length = static_cast<int>(line.size());
  const std::vector<float> interleaved(line.begin(), line.end());
  for (int i = 0; i < length; ++i) {
    const int place = PermPlace(i % 2 == 0 ? kLow : kHigh, i / 2, length);
    line[static_cast<std::size_t>(place)] = interleaved[static_cast<std::size_t>(i)];
  }
}

void INVPERM(std::span<float> line) {
  const int length = static_cast<int>(line.size());
  const std::vector<float> bands(line.begin(), line.end());
  for (int i = 0; i < length; ++i) {
    const int place = InvPermPlace(i % 2 == 0 ? kLow : kHigh, i / 2, length);
    line[static_cast<std::size_t>(i)] = bands[static_cast<std::size_t>(place)];
  }
}

}  // namespace marovia
