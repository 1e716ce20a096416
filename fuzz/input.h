// The bytes of a fuzzer as parameters, from the front.
#pragma once

#include <cstddef>

#include "marovia/codec.h"

namespace marovia::fuzz {

class Input {
 public:
  explicit Input(ByteView bytes) : rest_(bytes) {}

  // 0 behind the end.
  int Byte() {
    if (rest_.empty()) return 0;
    const int byte = rest_.front();
    rest_ = rest_.subspan(1);
    return byte;
  }
  int Below(int limit) { return Byte() % limit; }
  int Word() {
    const int low = Byte();
    return Byte() << 8 | low;
  }
  FileKind Kind() {
    const auto kinds = AllKinds();
    return kinds[static_cast<std::size_t>(Byte()) % kinds.size()];
  }
  [[nodiscard]] ByteView Rest() const { return rest_; }

 private:
  ByteView rest_;
};

}  // namespace marovia::fuzz
