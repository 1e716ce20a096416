#pragma once

#include <bit>
#include <cstdint>

#include "marovia/image.h"

namespace marovia::test {

// What a header says, be it right or wrong.
struct Forgery {
  int levels = 1;
  int wavelet = 1;
  int rows = 32;
  int cols = 32;
  float mean = 0;
  int exponent = 5;
};

// The header, byte by byte; of a lossless file without its budget.
inline Bytes ForgedHeader(const Forgery& forgery, std::int32_t budget = 1000,
                          bool lossless = false) {
  Bytes file;
  const auto append = [&file](std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) file.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
  };
  if (!lossless) append(static_cast<std::uint32_t>(budget), 4);
  append(static_cast<std::uint32_t>(10 * forgery.levels + forgery.wavelet), 1);
  append(static_cast<std::uint32_t>(forgery.rows), 2);
  append(static_cast<std::uint32_t>(forgery.cols), 2);
  append(std::bit_cast<std::uint32_t>(forgery.mean), 4);
  append(static_cast<std::uint32_t>(forgery.exponent), 1);
  return file;
}

}  // namespace marovia::test
