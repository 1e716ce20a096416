#include <cstddef>
#include <vector>

#include "base/checked.h"
#include "tests/support/literal_transform.h"

namespace marovia::literal {
namespace {

constexpr int kExtension = 6;
constexpr int kEven = 0;
constexpr int kOdd = 1;

constexpr double kA = -1.586134342F;
constexpr double kB = -0.05298011854F;
constexpr double kC = 0.8829111F;
constexpr double kD = 0.44350687F;
constexpr double kK = 1.1496044F;

// Place i of a line of n samples that is mirrored at both ends without repeating the end samples.
int Reflect(int i, int n) {
  if (n == 1) return 0;
  while (i < 0 || i >= n) i = i < 0 ? -i : 2 * (n - 1) - i;
  return i;
}

// A line with kExtension mirrored samples on each side: read as double, stored as float.
class Extended {
 public:
  explicit Extended(std::span<const float> x)
      : size_(static_cast<int>(x.size())), samples_(x.size() + kExtension + kExtension) {
    for (int i = -kExtension; i < size_ + kExtension; ++i) {
      Set(i, x[static_cast<std::size_t>(Reflect(i, size_))]);
    }
  }

  double operator[](int i) const { return samples_[Index(i)]; }
  void Set(int i, double value) { samples_[Index(i)] = static_cast<float>(value); }

  // Calls step for each place of one parity that lies at most `reach` outside of the line. A step's
  // reach is how far outside the steps after it still look.
  void Sweep(int parity, int reach, auto step) {
    for (int i = -reach; i < size_ + reach; ++i) {
      if ((i & 1) == parity) step(i);
    }
  }

  void CopyTo(std::span<float> x) const {
    for (int i = 0; i < size_; ++i) x[static_cast<std::size_t>(i)] = samples_[Index(i)];
  }

 private:
  static std::size_t Index(int i) {
    const int place = i + kExtension;
    return static_cast<std::size_t>(place);
  }

  int size_;
  std::vector<float> samples_;
};

double Round(double value) {
  return static_cast<float>(ToInt32(value));
}

// y[i] += factor * (its two neighbours).
void Lift(Extended& y, int parity, int reach, double factor) {
  y.Sweep(parity, reach, [&](int i) { y.Set(i, (y[i - 1] + y[i + 1]) * factor + y[i]); });
}

void Unlift(Extended& y, int parity, int reach, double factor) {
  y.Sweep(parity, reach, [&](int i) { y.Set(i, y[i] - (y[i - 1] + y[i + 1]) * factor); });
}

// The third step of the 2+2,2 wavelet at the odd place i: two second differences of low samples.
double Bracket(const Extended& y, int i) {
  const int j = i - 1;
  const double w = 1.0 / 16.0;
  return (y[j + 2] + y[j + 2] - y[j] - y[j + 4]) * w + (y[j] + y[j] - y[j - 2] - y[j + 2]) * w;
}

void Forward97(Extended& y) {
  Lift(y, kOdd, 3, kA);
  Lift(y, kEven, 2, kB);
  Lift(y, kOdd, 1, kC);
  Lift(y, kEven, 0, kD);
  y.Sweep(kEven, 0, [&](int i) { y.Set(i, y[i] * kK); });
  y.Sweep(kOdd, 0, [&](int i) { y.Set(i, y[i] / kK); });
}

void Inverse97(Extended& y) {
  y.Sweep(kEven, 4, [&](int i) { y.Set(i, y[i] / kK); });
  y.Sweep(kOdd, 4, [&](int i) { y.Set(i, y[i] * kK); });
  Unlift(y, kEven, 3, kD);
  Unlift(y, kOdd, 2, kC);
  Unlift(y, kEven, 1, kB);
  Unlift(y, kOdd, 0, kA);
}

void Forward53(Extended& y, int reach) {
  y.Sweep(kOdd, reach + 1, [&](int i) { y.Set(i, y[i] - Round((y[i - 1] + y[i + 1]) * 0.5)); });
  y.Sweep(kEven, reach, [&](int i) { y.Set(i, Round((y[i - 1] + y[i + 1]) * 0.25) + y[i]); });
}

void Inverse53(Extended& y) {
  y.Sweep(kEven, 1, [&](int i) { y.Set(i, y[i] - Round((y[i - 1] + y[i + 1]) * 0.25)); });
  y.Sweep(kOdd, 0, [&](int i) { y.Set(i, y[i] + Round((y[i - 1] + y[i + 1]) * 0.5)); });
}

void Forward22(Extended& y) {
  Forward53(y, 3);
  y.Sweep(kOdd, 0, [&](int i) { y.Set(i, y[i] - Round(Bracket(y, i))); });
}

void Inverse22(Extended& y) {
  y.Sweep(kOdd, 2, [&](int i) { y.Set(i, y[i] + Round(Bracket(y, i))); });
  Inverse53(y);
}

}  // namespace

void SymmWavTr2D(WaveletKind wavelet, std::span<float> x) {
  Extended y(x);
  if (wavelet == WaveletKind::kDaub97) Forward97(y);
  if (wavelet == WaveletKind::kInteger53) Forward53(y, 0);
  if (wavelet == WaveletKind::kInteger22) Forward22(y);
  y.CopyTo(x);
}

void InvSymmWavTr2D(WaveletKind wavelet, std::span<float> x) {
  Extended y(x);
  if (wavelet == WaveletKind::kDaub97) Inverse97(y);
  if (wavelet == WaveletKind::kInteger53) Inverse53(y);
  if (wavelet == WaveletKind::kInteger22) Inverse22(y);
  y.CopyTo(x);
}

void Perm(std::span<float> x) {
  const std::size_t h = x.size() / 2;
  std::vector<float> t(h);
  for (std::size_t m = 0; m < h; ++m) t[m] = x[2 * m + 1];
  for (std::size_t m = 1; m < h; ++m) x[m] = x[2 * m];
  for (std::size_t m = 0; m < h; ++m) x[h + m] = t[m];
}

void INVPERM(std::span<float> x) {
  const std::size_t n = x.size();
  const std::size_t h = n / 2;
  std::vector<float> t(h);
  for (std::size_t m = h; m + 1 < n; ++m) t[m - h] = x[m];
  for (std::size_t k = 1; k < h; ++k) x[n - 2 * k] = x[h - k];
  for (std::size_t m = 0; m + h + 1 < n; ++m) x[2 * m + 1] = t[m];
}

}  // namespace marovia::literal
