// Writing a file such that it is either there whole or not at all.
#pragma once

#include <csignal>
#include <string>

#include "marovia/image.h"

namespace marovia {

// Where a result goes. A regular file is written without a name or under another one in its folder,
// synced, and put in place, so that until then a file of that name stays as it was; who may use the
// old file may use the new one, and nobody else. A symbolic link is followed, not replaced. A
// device, a FIFO and "-" (standard output) are written to directly.
class OutputFile {
 public:
  // Errors kIo where `name` is a folder or a file that may not be replaced, kInvalidArgument where
  // it is empty, or standard output on a terminal; `force` allows a file and a terminal.
  OutputFile(const std::string& name, bool force);

  // Error kIo where not every byte got there. Nothing stray is left then, also after an interrupt.
  void Put(ByteView bytes) const;

  [[nodiscard]] bool IsStandardOutput() const { return kind_ == Kind::kStandardOutput; }

 private:
  enum class Kind { kNewFile, kReplacedFile, kDirect, kStandardOutput };

  static Kind KindOf(const std::string& name, bool force);
  void PutInPlace(ByteView bytes) const;

  Kind kind_;
  bool force_;
  std::string path_;  // behind all symbolic links
};

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

// True where the name leads to something that is neither a regular file nor a folder.
bool IsDeviceOrPipe(const std::string& name);

}  // namespace marovia
