// Keeping the signals that end a program waiting while a file is put in place.
#pragma once

#include <csignal>

namespace marovia {

// While one lives, an interrupt waits; it strikes when the hold ends. Signals that the program was
// started to ignore stay ignored and never count as waiting.
class SignalHold {
 public:
  SignalHold();
  SignalHold(const SignalHold&) = delete;
  SignalHold& operator=(const SignalHold&) = delete;
  ~SignalHold();

  [[nodiscard]] bool IsAnyWaiting() const;

 private:
  sigset_t held_{};
  sigset_t before_{};
};

}  // namespace marovia
