#include "coding/arithmetic_coder.h"

#include <utility>

namespace marovia {

template <class Setup>
void ArithmeticEncoder<Setup>::Carry() {
  if ((low_ >> held_) == 0) return;
  low_ &= (std::uint64_t{1} << held_) - 1;
  // The low end stays below 1, so a byte that is not yet full of ones always comes.
  std::size_t i = bytes_.size() - 1;
  while (++bytes_[i] == 0) --i;
}

template <class Setup>
void ArithmeticEncoder<Setup>::WriteBytes() {
  Carry();
  while (held_ >= Setup::kBits + 8) {
    held_ -= 8;
    bytes_.push_back(static_cast<std::uint8_t>(low_ >> held_));
    low_ &= (std::uint64_t{1} << held_) - 1;
  }
}

template <class Setup>
std::int64_t ArithmeticEncoder<Setup>::BitsToFollow() const {
  const std::uint64_t above = low_ >> (Setup::kBits - 1);
  const int aboveCount = held_ - (Setup::kBits - 1);
  int ones = std::countr_one(above);
  if (ones < aboveCount) return ones;
  // A carry cannot be pending here: it would have ended the run.
  std::int64_t count = aboveCount;
  ones = 8;
  for (std::size_t i = bytes_.size(); i > 0 && ones == 8; --i) {
    ones = std::countr_one(bytes_[i - 1]);
    count += ones;
  }
  return count;
}

// The two bits are 01 where the interval begins in the first quarter of the window and 10
// elsewhere, in front of whose second bit all bits to follow are the second's like: the bits above
// the lowest B - 2, plus one.
template <class Setup>
Bytes ArithmeticEncoder<Setup>::DoneEncoding() {
  constexpr int kDropped = Setup::kBits - 2;
  low_ += std::uint64_t{1} << kDropped;
  Carry();
  low_ >>= kDropped;
  held_ -= kDropped;
  shifted_ += 2;
  while (held_ > 0) {
    const std::uint64_t byte = held_ >= 8 ? low_ >> (held_ - 8) : low_ << (8 - held_);
    bytes_.push_back(static_cast<std::uint8_t>(byte));
    held_ -= 8;
  }
  // Nothing is to follow any more.
  low_ = 0;
  held_ = Setup::kBits;
  return std::move(bytes_);
}

template class ArithmeticEncoder<FirstSetup>;
template class ArithmeticEncoder<SecondSetup>;

}  // namespace marovia
