// The passes written a second time, as plainly as they can be said: every pass walks every
// position. What the library does fast must come out the same here. Header, transform, mean and
// mask are the library's own; files recorded elsewhere hold those.
#pragma once

#include "tests/support/testing.h"

namespace marovia::plain {

// The kinds that are walked here: all but the context-coded one.
std::vector<FileKind> Kinds();

struct Coded {
  Bytes file;
  std::vector<PassReport> passes;  // one a pass, then one more of the end
};

// Errors as the library's.
Coded Compress(const Image& image, const CompressOptions& options);

struct Decoded {
  Image image;
  std::vector<PassReport> passes;
  bool missingBits = false;  // decoding ended because the file did; a complete file may end so too
};

// Reads as many bits as the file's budget and this one allow. Errors as the library's.
Decoded Decompress(ByteView file, FileKind kind, std::optional<std::int32_t> budget = {});

struct Position {
  int row = 0;
  int col = 0;
};
using Positions = std::vector<Position>;

// How a coder goes through the positions of a pass. What is found is not 0 in the quantized values.
class Visits {
 public:
  Visits() = default;
  Visits(const Visits&) = delete;
  Visits& operator=(const Visits&) = delete;
  virtual ~Visits() = default;

  // In the first part of a pass: the next position, one of those found earlier or not.
  virtual std::optional<Position> Next() = 0;
  // The position that was given last is found.
  virtual void Found(Position) {}
  // The order in which what earlier passes found is refined, and in the end placed.
  [[nodiscard]] virtual const Positions& Refined() const = 0;
  virtual void EndPass(const Grid<float>& quantized) = 0;
};

}  // namespace marovia::plain
