#include "coding/bit_stream.h"

namespace marovia {

void BitWriter::Write(Bytes& bytes, std::uint32_t bits) {
  const std::uint8_t four[] = {
      static_cast<std::uint8_t>(bits >> 24), static_cast<std::uint8_t>(bits >> 16),
      static_cast<std::uint8_t>(bits >> 8), static_cast<std::uint8_t>(bits)};
  bytes.insert(bytes.end(), four, four + 4);
}

void BitWriter::Finish() {
  for (; heldCount_ > 0; heldCount_ -= 8) {
    const std::uint64_t byte =
        heldCount_ >= 8 ? held_ >> (heldCount_ - 8) : held_ << (8 - heldCount_);
    bytes_->push_back(static_cast<std::uint8_t>(byte));
  }
  heldCount_ = 0;
}

BitReader::BitReader(ByteView bytes) : bytes_(bytes) {
  Refill();
}

std::uint64_t BitReader::LastBytes(ByteView bytes, std::size_t next) {
  std::uint64_t bits = 0;
  for (std::size_t i = next; i < next + 4; ++i) {
    bits = bits << 8 | (i < bytes.size() ? bytes[i] : 0U);
  }
  return bits;
}

}  // namespace marovia
