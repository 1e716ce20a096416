// The bands of a transform in the order in which they are coded, and the way there and back.
#pragma once

#include <cmath>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "context/context_header.h"
#include "wavelet/level_lifting.h"
#include "wavelet/transform.h"

namespace marovia {

enum class BandKind { kLow, kRight, kLower, kDiagonal };

struct ContextBand {
  BandKind kind = BandKind::kLow;
  int level = 0;  // 1 is the finest; the low band has that of the coarsest
  int rows = 0;
  int cols = 0;
  int shift = 0;  // a coefficient's magnitude is coded times 2^shift
};

// The low band, then right, lower and diagonal of the coarsest level, and so on to the finest.
std::vector<ContextBand> ContextBands(const ContextHeader& header);

// Where a band stands among them.
inline std::size_t BandIndex(const ContextHeader& header, int level, BandKind kind) {
  return kind == BandKind::kLow
             ? 0
             : static_cast<std::size_t>(3 * (header.levels - level) + static_cast<int>(kind));
}

// The rows and columns of a band, all included, that a region of the image needs: the place of the
// region and two around it. They may reach outside the band.
Region RegionOfBand(const Region& region, const ContextBand& band);

// The image's row r, held to the last one, continued with its last pixel to the width of the line.
template <class Sample>
void FetchPixels(const Image& image, int r, BasicSplitLine<Sample>& line);

// A row taken apart, and put together again.
template <class Sample>
void Deinterleave(std::span<const Sample> row, BasicSplitLine<Sample>& line);
template <class Sample>
void Interleave(BasicSplitLine<Sample>& line, std::span<Sample> row);

// As many of the first samples as there are pixels: held to 0 to 255, a fraction rounded half to
// even.
void StorePixels(std::span<const float> row, std::span<std::uint8_t> pixels);
void StorePixels(std::span<const std::int32_t> row, std::span<std::uint8_t> pixels);

// What a low band, after so many levels that are left out, has too much: the weighted wavelet
// doubles what it keeps with every level.
inline void UndoGain(std::span<float> row, int levels) {
  const float factor = std::ldexp(1.0F, -levels);
  for (float& sample : row) sample *= factor;
}
inline void UndoGain(std::span<std::int32_t>, int) {}

// Calls sink(band index, row number, row) for every row of every band of an image of the header's
// sides, on several threads perhaps; the rows of the low band come last. The samples are
// single-precision with the 9/7 wavelet, else integers.
template <class Sample, class Sink>
void ForwardBands(const Image& image, const ContextHeader& header, int threads, Sink sink) {
  LevelSides sides{header.PaddedRows(), header.PaddedCols()};
  Grid<Sample> low;
  for (int level = 1; level <= header.levels; ++level) {
    const auto half = static_cast<std::size_t>(sides.cols / 2);
    Grid<Sample> next(sides.rows / 2, sides.cols / 2, Unfilled{});
    const auto fetch = [&](int r, BasicSplitLine<Sample>& line) {
      level == 1 ? FetchPixels(image, r, line) : Deinterleave<Sample>(low.Row(r), line);
    };
    const auto store = [&](Band band, int k, std::span<const Sample> row) {
      if (band == Band::kLow) {
        std::copy_n(row.begin(), half, next.Row(k).begin());
        sink(BandIndex(header, level, BandKind::kRight), k, row.last(half));
      } else {
        sink(BandIndex(header, level, BandKind::kLower), k, row.first(half));
        sink(BandIndex(header, level, BandKind::kDiagonal), k, row.last(half));
      }
    };
    LiftLevel<Sample>({LiftingSteps(header.wavelet, Direction::kForward)}, sides, threads, fetch,
                      store);
    low = std::move(next);
    sides = {sides.rows / 2, sides.cols / 2};
  }
  if (header.levels == 0) {
    low = Grid<Sample>(image.Rows(), image.Cols(), Unfilled{});
    std::copy(image.Samples().begin(), image.Samples().end(), low.Samples().begin());
  }
  for (int r = 0; r < sides.rows; ++r) sink(0, r, std::span<const Sample>(low.Row(r)));
}

// On how many threads a picture is put together, and how many levels of it are left out.
struct Inversion {
  int threads = 1;
  int reduce = 0;  // up to the levels of the file
};

// Back: fetch(band index, row number, row) fills a row of a band, on several threads perhaps.
template <class Sample, class Fetch>
Image InvertBands(const ContextHeader& header, const Inversion& how, Fetch fetch) {
  LevelSides sides{header.PaddedRows() >> header.levels, header.PaddedCols() >> header.levels};
  Image image(ReducedSide(header.rows, how.reduce), ReducedSide(header.cols, how.reduce),
              Unfilled{});
  const auto storePixels = [&](std::span<Sample> row, int r) {
    if (r >= image.Rows()) return;
    UndoGain(row, how.reduce);
    StorePixels(row, image.Row(r));
  };
  Grid<Sample> low(sides.rows, sides.cols, Unfilled{});
  for (int r = 0; r < sides.rows; ++r) fetch(std::size_t{0}, r, low.Row(r));
  for (int level = header.levels; level > how.reduce; --level) {
    const bool isLast = level == how.reduce + 1;
    const auto half = static_cast<std::size_t>(sides.cols);
    sides = {2 * sides.rows, 2 * sides.cols};
    Grid<Sample> next;
    if (!isLast) next = Grid<Sample>(sides.rows, sides.cols, Unfilled{});
    const auto fetchHalves = [&](Band band, int k, std::span<Sample> row) {
      if (band == Band::kLow) {
        std::copy_n(low.Row(k).begin(), half, row.begin());
        fetch(BandIndex(header, level, BandKind::kRight), k, row.last(half));
      } else {
        fetch(BandIndex(header, level, BandKind::kLower), k, row.first(half));
        fetch(BandIndex(header, level, BandKind::kDiagonal), k, row.last(half));
      }
    };
    const auto emit = [&](int r, BasicSplitLine<Sample>& split) {
      if (!isLast) return Interleave<Sample>(split, next.Row(r));
      Buffer<Sample> line(2 * half);
      Interleave<Sample>(split, line);
      storePixels(line, r);
    };
    InvertLevel<Sample>({LiftingSteps(header.wavelet, Direction::kInverse)}, sides, how.threads,
                        fetchHalves, emit);
    low = std::move(next);
  }
  if (header.levels == how.reduce) {
    for (int r = 0; r < sides.rows; ++r) storePixels(low.Row(r), r);
  }
  return image;
}

}  // namespace marovia
