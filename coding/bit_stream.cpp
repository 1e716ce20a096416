#include "coding/bit_stream.h"

#include <utility>

namespace marovia {

void BitWriter::WriteHalf() {
  heldCount_ -= 32;
  const auto half = static_cast<std::uint32_t>(held_ >> heldCount_);
  const std::uint8_t bytes[] = {
      static_cast<std::uint8_t>(half >> 24), static_cast<std::uint8_t>(half >> 16),
      static_cast<std::uint8_t>(half >> 8), static_cast<std::uint8_t>(half)};
  bytes_.insert(bytes_.end(), bytes, bytes + 4);
}

Bytes BitWriter::Finish() {
  for (; heldCount_ > 0; heldCount_ -= 8) {
    const std::uint64_t byte =
        heldCount_ >= 8 ? held_ >> (heldCount_ - 8) : held_ << (8 - heldCount_);
    bytes_.push_back(static_cast<std::uint8_t>(byte));
  }
  heldCount_ = 0;
  return std::move(bytes_);
}

std::uint64_t BitReader::LastBytes(std::size_t next) const {
  std::uint64_t bits = 0;
  for (std::size_t i = next; i < next + 4; ++i) {
    bits = bits << 8 | (i < bytes_.size() ? bytes_[i] : 0U);
  }
  return bits;
}

}  // namespace marovia
