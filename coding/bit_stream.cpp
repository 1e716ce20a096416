#include "coding/bit_stream.h"

#include <utility>

namespace marovia {

Bytes BitWriter::Finish() {
  if (heldCount_ > 0) {
    bytes_.push_back(static_cast<std::uint8_t>(held_ << (8 - heldCount_)));
    heldCount_ = 0;
  }
  return std::move(bytes_);
}

// Leaves more than 32 bits held, so that no GetBits runs short; zeros stand in for missing bytes.
void BitReader::Refill() {
  while (heldCount_ <= 56) {
    if (next_ < bytes_.size()) {
      held_ |= std::uint64_t{bytes_[next_++]} << (56 - heldCount_);
    }
    heldCount_ += 8;
  }
}

}  // namespace marovia
