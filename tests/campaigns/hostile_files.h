// Files made to cost a decoder as much as possible.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "marovia/codec.h"

namespace marovia::test {

constexpr std::size_t kPasses = 32;

// A stream that does in each pass just what is wanted, which no image would. What is found follows
// from the numbers of pending coefficients alone, so that nothing need be known of their values.
struct Script {
  FileKind kind = FileKind::kAwf;
  WaveletKind wavelet = WaveletKind::kDaub97;
  int levels = 6;  // held to what the sides bear
  int rows = 256;
  int cols = 256;
  int exponent = 14;
  // How much of what is pending each pass finds, 0 to 1; below 0, one coefficient at the very end.
  std::array<float, kPasses> finds{};
  bool scattered = false;   // at random distances, rather than even ones
  bool randomBits = false;  // of signs and refinements, rather than all alike, which cost least
};

Bytes FileOf(const Script& script);

// A header like that script's, and any stream.
Bytes FileOf(const Script& script, const Bytes& stream);

// What is known to be dear, for every kind, at `rows` x `cols`.
struct HostileFile {
  std::string name;
  FileKind kind;
  Bytes file;
  int rows;
  int cols;
};
std::vector<HostileFile> HostileFiles(int rows, int cols, FileKind kind);

// The same for the readers of images.
std::vector<HostileFile> HostileImages(int rows, int cols);

}  // namespace marovia::test
