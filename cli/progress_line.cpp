#include "cli/progress_line.h"

#include <cstdio>
#include <unistd.h>

namespace marovia::cli {
namespace {

constexpr std::chrono::milliseconds kPause{100};

void Write(const std::string& text) {
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
}

}  // namespace

ProgressLine::ProgressLine(bool shown) : shown_(shown && ::isatty(STDERR_FILENO) == 1) {}

void ProgressLine::Show(const std::string& text) {
  const auto now = std::chrono::steady_clock::now();
  if (!shown_ || now < next_) return;
  next_ = now + kPause;
  Clear();
  Write(text);
  width_ = text.size();
}

void ProgressLine::Clear() {
  if (width_ > 0) Write("\r" + std::string(width_, ' ') + "\r");
  width_ = 0;
}

}  // namespace marovia::cli
