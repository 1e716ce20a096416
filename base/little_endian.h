// Numbers as the bytes of files hold them, the lowest byte first.
#pragma once

#include <cstdint>

#include "marovia/image.h"

namespace marovia {

// The number held by all the bytes, at most four, the lowest first.
inline std::uint32_t LittleEndian(ByteView bytes) {
  std::uint32_t value = 0;
  for (std::size_t i = bytes.size(); i-- > 0;) value = value << 8 | bytes[i];
  return value;
}

inline void AppendLittleEndian(Bytes& bytes, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i, value >>= 8) bytes.push_back(static_cast<std::uint8_t>(value));
}

}  // namespace marovia
