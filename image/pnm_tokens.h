// The decimal numbers of a Netpbm file.
#pragma once

#include <cstddef>
#include <cstdint>

#include "marovia/image.h"

namespace marovia {

// Numbers are set apart by white space. A comment runs from '#' to the end of its line and counts
// as that line end, also right behind a number: after "255#full range\n" the samples begin.
class PnmTokens {
 public:
  explicit PnmTokens(ByteView bytes) : bytes_(bytes) {}

  // The next number, taken together with the one white space behind it. Error kMalformed where
  // something else stands there, or a number above 10^15.
  std::int64_t Number();

  [[nodiscard]] ByteView Rest() const { return bytes_.subspan(at_); }

 private:
  int Next();
  [[noreturn]] static void FailAt(int byte);

  ByteView bytes_;
  std::size_t at_ = 0;
};

}  // namespace marovia
