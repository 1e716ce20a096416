// Calls of libraries that do not come back from a failure but jump.
#pragma once

#include <array>
#include <csetjmp>
#include <cstdarg>
#include <cstdio>
#include <string>

#include "marovia/error.h"

namespace marovia {

// Where a library jumps to, and what it said. The jump leaves the frames of the library, of the
// function that it reports to, and of the call given to Run: none of these may hold anything with a
// destructor. All that must be given back belongs to whoever calls Run.
class GuardedCalls {
 public:
  // Error kMalformed with what the library said.
  template <class Call>
  void Run(const Call& call) {
    if (!Returns(call)) Fail(Errc::kMalformed, failure_.data());
  }

  // For the library of that name: its last words, cut where they are long, and no way back.
  [[noreturn]] void JumpBack(const char* library, const char* text) {
    static_cast<void>(
        std::snprintf(failure_.data(), failure_.size(), "The %s library says: %s.", library, text));
    std::longjmp(back_, 1);  // NOLINT(cert-err52-cpp): the library wants it so
  }

 private:
  template <class Call>
  bool Returns(const Call& call) {
    if (setjmp(back_) != 0) return false;  // NOLINT(cert-err52-cpp): the library wants it so
    call();
    return true;
  }

  std::jmp_buf back_{};
  std::array<char, 256> failure_{};
};

}  // namespace marovia
