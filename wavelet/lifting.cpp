#include "wavelet/lifting.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <vector>

#include "marovia/error.h"

#include "base/bits.h"
#include "base/checked.h"

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

// What a step in that arithmetic goes by: the integers of its size, and the most that it rounds.
template <class Real>
struct Arithmetic;
template <>
struct Arithmetic<double> {
  using Sign = std::int64_t;
  static constexpr double kMost = 2147483647.4999995;  // the last below 2^31 - 0.5
};
template <>
struct Arithmetic<float> {
  using Sign = std::int32_t;
  static constexpr float kMost = 4194304.0F;  // 2^22; single precision is exact far below it
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
    const auto rounded = static_cast<float>((value + kRounder<Real>)-kRounder<Real>);
    t[i] = static_cast<float>(static_cast<Real>(t[i]) + static_cast<Real>(rounded));
  }
  return tooLarge >= 0;
}

template <class Real>
[[gnu::always_inline]] inline bool AddRoundedSum(float* __restrict t, std::size_t count,
                                                 const Neighbours<float>& n, double weight) {
  const float* b = n[1];
  const float* c = n[2];
  const auto w = static_cast<Real>(weight);
  return AddRounded<Real>(t, count, [=](std::size_t i) {
    return (static_cast<Real>(b[i]) + static_cast<Real>(c[i])) * w;
  });
}

template <class Real>
[[gnu::always_inline]] inline bool AddCurvature(float* __restrict t, std::size_t count,
                                                const Neighbours<float>& n, double weight) {
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

MAROVIA_WIDE_VECTORS bool RoundedInDouble(std::span<float> t, const Neighbours<float>& n,
                                          double weight) {
  return AddRoundedSum<double>(t.data(), t.size(), n, weight);
}
MAROVIA_WIDE_VECTORS bool RoundedInSingle(std::span<float> t, const Neighbours<float>& n,
                                          double weight) {
  return AddRoundedSum<float>(t.data(), t.size(), n, weight);
}
MAROVIA_WIDE_VECTORS bool CurvedInDouble(std::span<float> t, const Neighbours<float>& n,
                                         double weight) {
  return AddCurvature<double>(t.data(), t.size(), n, weight);
}
MAROVIA_WIDE_VECTORS bool CurvedInSingle(std::span<float> t, const Neighbours<float>& n,
                                         double weight) {
  return AddCurvature<float>(t.data(), t.size(), n, weight);
}

MAROVIA_WIDE_VECTORS void AddWeighted(std::span<float> targets, const Neighbours<float>& n,
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

// A quotient by 2^kShift, rounded half to even: the rest decides, and of two equally near the floor
// is taken where it is even.
template <int kShift>
[[gnu::always_inline]] inline std::uint32_t RoundedQuotient(std::uint32_t sum) {
  const auto floor = static_cast<std::uint32_t>(static_cast<std::int32_t>(sum) >> kShift);
  const std::uint32_t rest = sum & ((1U << kShift) - 1);
  return floor + ((rest + (floor & 1) + (1U << (kShift - 1)) - 1) >> kShift);
}

// Adds sign (1 or -1) times the quotient of what sum(i) gives to every target.
template <int kShift, class Sum>
[[gnu::always_inline]] inline void AddQuotient(std::span<std::int32_t> targets, std::uint32_t sign,
                                               Sum sum) {
  std::int32_t* __restrict t = targets.data();
  const std::size_t count = targets.size();
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint32_t added = sign * RoundedQuotient<kShift>(sum(i));
    t[i] = static_cast<std::int32_t>(static_cast<std::uint32_t>(t[i]) + added);
  }
}

template <int kShift>
[[gnu::always_inline]] inline void AddQuotientOfTwo(std::span<std::int32_t> targets,
                                                    const Neighbours<std::int32_t>& n,
                                                    std::uint32_t sign) {
  const std::int32_t* b = n[1];
  const std::int32_t* c = n[2];
  AddQuotient<kShift>(targets, sign, [=](std::size_t i) {
    return static_cast<std::uint32_t>(b[i]) + static_cast<std::uint32_t>(c[i]);
  });
}

MAROVIA_WIDE_VECTORS void AddHalf(std::span<std::int32_t> targets,
                                  const Neighbours<std::int32_t>& n, std::uint32_t sign) {
  AddQuotientOfTwo<1>(targets, n, sign);
}

MAROVIA_WIDE_VECTORS void AddQuarter(std::span<std::int32_t> targets,
                                     const Neighbours<std::int32_t>& n, std::uint32_t sign) {
  AddQuotientOfTwo<2>(targets, n, sign);
}

// (2c - b - d) + (2b - a - c) is (b + c) - (a + d).
MAROVIA_WIDE_VECTORS void AddSixteenthOfCurvature(std::span<std::int32_t> targets,
                                                  const Neighbours<std::int32_t>& n,
                                                  std::uint32_t sign) {
  const std::int32_t* a = n[0];
  const std::int32_t* b = n[1];
  const std::int32_t* c = n[2];
  const std::int32_t* d = n[3];
  AddQuotient<4>(targets, sign, [=](std::size_t i) {
    return static_cast<std::uint32_t>(b[i]) + static_cast<std::uint32_t>(c[i]) -
           static_cast<std::uint32_t>(a[i]) - static_cast<std::uint32_t>(d[i]);
  });
}

void CheckSmall(bool small) {
  if (!small) Fail(Errc::kOverflow, "Overflow: a lifting step leaves its range.");
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
               const Neighbours<float>& neighbours) {
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

void ApplyStep(const LiftingStep& step, Precision, std::span<std::int32_t> targets,
               const Neighbours<std::int32_t>& neighbours) {
  const std::uint32_t sign = step.weight < 0 ? ~0U : 1U;
  if (step.rule == kCurved) return AddSixteenthOfCurvature(targets, neighbours, sign);
  if (std::fabs(step.weight) == 0.5) return AddHalf(targets, neighbours, sign);
  AddQuarter(targets, neighbours, sign);
}

template <class Sample>
BasicSplitLine<Sample>::BasicSplitLine(int longest)
    : low_(static_cast<std::size_t>((longest + 1) / 2 + 2 * kMargin)),
      high_(static_cast<std::size_t>(longest / 2 + 2 * kMargin)) {}

template <class Sample>
void BasicSplitLine<Sample>::Resize(int length) {
  length_ = length;
  lowCount_ = (length + 1) / 2;
  highCount_ = length / 2;
}

// The last low sample of an odd line stays last, and is looked for as if the length were even.
template <class Sample>
void BasicSplitLine<Sample>::StoreInBandOrder(std::span<Sample> line) const {
  const auto high = std::copy_n(low_.begin() + kMargin, highCount_, line.begin());
  std::copy_n(high_.begin() + kMargin, highCount_, high);
  if (lowCount_ > highCount_) line.back() = low_[kMargin + static_cast<std::size_t>(highCount_)];
}

template <class Sample>
void BasicSplitLine<Sample>::LoadFromBandOrder(std::span<const Sample> line) {
  const auto low = Low();
  if (lowCount_ > highCount_) {
    for (std::size_t k = 0; k < low.size(); ++k) low[k] = line[2 * k];
  } else {
    std::copy_n(line.begin(), lowCount_, low.begin());
  }
  std::copy_n(line.begin() + highCount_, highCount_, High().begin());
}

template <class Sample>
void BasicSplitLine<Sample>::ReflectEnds(Band band) {
  const bool isLow = band == kLow;
  Sample* samples = (isLow ? Low() : High()).data();
  const int count = isLow ? lowCount_ : highCount_;
  const int odd = isLow ? 0 : 1;
  for (int k = 1; k <= kMargin; ++k) {
    samples[-k] = samples[Reflect(odd - 2 * k, length_) / 2];
    const int beyond = count + k - 1;
    samples[beyond] = samples[Reflect(2 * beyond + odd, length_) / 2];
  }
}

template <class Sample>
void BasicSplitLine<Sample>::Lift(std::span<const LiftingStep> steps, Precision precision) {
  if (length_ < 2) return;
  for (const LiftingStep& step : steps) {
    if (step.rule != kTimes && step.rule != kOver) {
      ReflectEnds(step.target == kHigh ? kLow : kHigh);
    }
    const Sample* low = Low().data();
    const Sample* high = High().data();
    if (step.target == kHigh) {
      ApplyStep(step, precision, High(), {low - 1, low, low + 1, low + 2});
    } else {
      ApplyStep(step, precision, Low(), {nullptr, high - 1, high, nullptr});
    }
  }
}

template class BasicSplitLine<float>;
template class BasicSplitLine<std::int32_t>;

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

}  // namespace marovia
