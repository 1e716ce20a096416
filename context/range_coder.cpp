#include "context/range_coder.h"

namespace marovia {

void RangeOutput::ShiftOut(std::uint64_t low) {
  const int carry = static_cast<int>(low >> 32);
  const int next = static_cast<int>(low >> 24 & 0xFF);
  if (carry == 0 && next == 0xFF) {
    ++waiting_;
    return;
  }
  Settle(carry);
  held_ = next;
}

void RangeOutput::Settle(int carry) {
  if (held_ >= 0) bytes_->push_back(static_cast<std::uint8_t>(held_ + carry));
  for (; waiting_ > 0; --waiting_) bytes_->push_back(static_cast<std::uint8_t>(0xFF + carry));
}

// The least number of bytes for which a number that ends with them lies in the interval together
// with all that may follow it.
void RangeOutput::Finish(std::uint64_t low, std::uint32_t range) {
  for (int count = 1; count <= 4; ++count) {
    const std::uint64_t unit = std::uint64_t{1} << (32 - 8 * count);
    const std::uint64_t value = (low + unit - 1) & ~(unit - 1);
    if (value + unit > low + range) continue;
    low = value;
    for (int i = 0; i < count; ++i) {
      ShiftOut(low);
      low = (low & 0xFFFFFF) << 8;
    }
    break;
  }
  Settle(0);
}

}  // namespace marovia
