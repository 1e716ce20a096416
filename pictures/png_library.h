// What reading and writing a PNG share: how the library tells of failures and warnings.
#pragma once

#include <algorithm>
#include <cstring>
#include <png.h>
#include <string_view>

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
  GuardedCalls& calls = TalkOf(png).calls;
  std::snprintf(calls.Failure().data(), calls.Failure().size(), "The PNG library says: %s.", text);
  calls.JumpBack();
}

inline void WarnPng(png_structp png, png_const_charp text) {
  PngTalk& talk = TalkOf(png);
  if (talk.warning[0] == 0) std::snprintf(talk.warning.data(), talk.warning.size(), "%s", text);
}

}  // namespace marovia
