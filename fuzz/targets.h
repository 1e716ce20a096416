// What the fuzzers run: functions that take any bytes and must not mind.
//
// A target returns where all is well, and throws std::logic_error where the library breaks a
// promise of its headers. Any exception but marovia::Error that leaves the library goes through.
#pragma once

#include <span>
#include <string_view>

#include "marovia/image.h"

namespace marovia::fuzz {

struct Target {
  std::string_view name;
  void (*run)(ByteView input);
};
std::span<const Target> Targets();

}  // namespace marovia::fuzz
