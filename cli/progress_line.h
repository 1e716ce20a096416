// A line on the terminal that is written over as work goes on.
#pragma once

#include <chrono>
#include <string>

namespace marovia::cli {

// Not safe for several threads at once.
class ProgressLine {
 public:
  // One that is not shown does nothing. Nothing is shown either where standard error is no
  // terminal.
  explicit ProgressLine(bool shown);

  // At most some ten times a second; what comes between is left out.
  void Show(const std::string& text);
  // Before anything else is written to the terminal.
  void Clear();

 private:
  bool shown_;
  std::size_t width_ = 0;  // of what stands there
  std::chrono::steady_clock::time_point next_;
};

}  // namespace marovia::cli
