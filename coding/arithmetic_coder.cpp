#include "coding/arithmetic_coder.h"

#include <array>
#include <bit>

namespace marovia {

template <class Setup>
std::uint64_t ArithmeticEncoder<Setup>::Carry(Bytes& bytes, std::uint64_t low, int held) {
  if ((low >> held) == 0) return low;
  // The low end stays below 1, so a byte that is not yet full of ones always comes.
  std::size_t i = bytes.size() - 1;
  while (++bytes[i] == 0) --i;
  return low & ((std::uint64_t{1} << held) - 1);
}

template <class Setup>
std::uint64_t ArithmeticEncoder<Setup>::Write(Bytes& bytes, std::uint64_t low, int held) {
  low = Carry(bytes, low, held);
  std::array<std::uint8_t, kWritten / 8> written{};
  for (std::uint8_t& byte : written) {
    held -= 8;
    byte = static_cast<std::uint8_t>(low >> held);
  }
  bytes.insert(bytes.end(), written.begin(), written.end());
  return low & ((std::uint64_t{1} << held) - 1);
}

template <class Setup>
std::int64_t ArithmeticEncoder<Setup>::CountToFollow(std::uint64_t low, int held,
                                                     ByteView written) {
  const std::uint64_t above = low >> (Setup::kBits - 1);
  const int aboveCount = held - (Setup::kBits - 1);
  int ones = std::countr_one(above);
  if (ones < aboveCount) return ones;
  // A carry cannot be pending here: it would have ended the run.
  std::int64_t count = aboveCount;
  ones = 8;
  for (std::size_t i = written.size(); i > 0 && ones == 8; --i) {
    ones = std::countr_one(written[i - 1]);
    count += ones;
  }
  return count;
}

// The two bits are 01 where the interval begins in the first quarter of the window and 10
// elsewhere, in front of whose second bit all bits to follow are the second's like: the bits above
// the lowest B - 2, plus one.
template <class Setup>
void ArithmeticEncoder<Setup>::DoneEncoding() {
  constexpr int kDropped = Setup::kBits - 2;
  int held = Held();
  low_ = Carry(*bytes_, low_ + (std::uint64_t{1} << kDropped), held) >> kDropped;
  spent_ += 2;
  for (held -= kDropped; held > 0; held -= 8) {
    const std::uint64_t byte = held >= 8 ? low_ >> (held - 8) : low_ << (8 - held);
    bytes_->push_back(static_cast<std::uint8_t>(byte));
  }
  // Nothing is to follow any more.
  low_ = 0;
  mostSpent_ = spent_ + kMostHeld - Setup::kBits;
}

template class ArithmeticEncoder<FirstSetup>;
template class ArithmeticEncoder<SecondSetup>;

}  // namespace marovia
