// The codecs that are measured against each other: ours, and those of the peers that this program
// was built with. All work in memory on one thread, from an image to the bytes of a file and back.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "marovia/codec.h"

namespace marovia::bench {

inline constexpr std::array kRates = {0.25, 0.5, 1.0};  // bits per pixel

struct Contestant {
  std::string name;  // "awf/0.5", "awg", "openjpeg/0.5", "openjpeg/lossless", ...
  double rate;       // 0 where it is lossless
  std::function<Bytes(const Image&)> compress;
  std::function<Image(ByteView)> decompress;
};

// "0.25", "0.5", "1".
std::string RateText(double rate);

// Those for one image: what has no rate but a quality is tuned to it. Each is tried once: Error
// kMalformed where a lossless one does not come back exactly, a lossy one not plausibly, or a file
// misses the size that was asked for.
std::vector<Contestant> ContestantsFor(const Image& image);

}  // namespace marovia::bench
