// What reading and writing a PNG share: how the library tells of failures and warnings.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <png.h>

#include "pictures/guarded_calls.h"

namespace marovia {

struct PngTalk {
  GuardedCalls calls;
  std::array<char, 256> warning{};  // the first
};

inline PngTalk& TalkOf(png_structp png) {
  return *static_cast<PngTalk*>(png_get_error_ptr(png));
}

[[noreturn]] inline void FailPng(png_structp png, png_const_charp text) {
  TalkOf(png).calls.JumpBack("PNG", text);
}

inline void WarnPng(png_structp png, png_const_charp text) {
  PngTalk& talk = TalkOf(png);
  if (talk.warning[0] != 0) return;
  const std::size_t length = std::min(std::strlen(text), talk.warning.size() - 1);
  std::copy_n(text, length, talk.warning.begin());
}

}  // namespace marovia
