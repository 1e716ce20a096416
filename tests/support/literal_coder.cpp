#include "tests/support/literal_coder.h"

#include "base/shift.h"

namespace marovia::literal {
namespace {

struct Reach {
  Region region;
  int widening = 0;

  // Whether a coefficient that stands for (row, col) of the image and around counts.
  [[nodiscard]] bool Holds(int row, int col) const {
    return region.row1 - widening <= row && row <= region.row2 + widening &&
           region.col1 - widening <= col && col <= region.col2 + widening;
  }
};

struct Block {
  int firstRow;
  int firstCol;
  int endRow;
  int endCol;
};

void MarkBand(Grid<std::int16_t>& mask, const Block& band, int scale, const Reach& reach) {
  for (int r = band.firstRow; r < band.endRow; ++r) {
    for (int c = band.firstCol; c < band.endCol; ++c) {
      const bool held = reach.Holds((r - band.firstRow) * scale, (c - band.firstCol) * scale);
      mask(r, c) = held ? 1 : 0;
    }
  }
}

int SupportOfWavelet(WaveletKind wavelet) {
  return wavelet == WaveletKind::kInteger22 ? 6 : 5;
}

}  // namespace

bool IsAdaptive(FileKind kind) {
  return kind == FileKind::kAwd || kind == FileKind::kAwf || kind == FileKind::kAwg;
}

bool LoopTest(WaveletKind wavelet, int pass, float threshold) {
  return wavelet == WaveletKind::kDaub97 ? pass >= kMostPasses : threshold == 1.0F;
}

bool PassesEnd(FileKind kind, WaveletKind wavelet, int pass, float threshold) {
  if (pass >= kMostPasses) return true;
  return kind == FileKind::kAwg ? threshold < 2.0F : LoopTest(wavelet, pass, threshold);
}

Grid<std::int16_t> GetROIValues(const Image& image, WaveletKind wavelet, int levels,
                                const Region& region) {
  const int w0 = LeftShift(static_cast<std::int16_t>(SupportOfWavelet(wavelet)), 1);
  Grid<std::int16_t> mask(image.Rows(), image.Cols());
  for (int k = 1; k <= levels; ++k) {
    const int rows = image.Rows() >> (k - 1);
    const int cols = image.Cols() >> (k - 1);
    const Reach reach{region, k == 1 ? w0 : ((1 << (k - 1)) + 1) * w0};
    MarkBand(mask, {rows / 2, 0, rows, cols / 2}, 1 << k, reach);
    MarkBand(mask, {0, cols / 2, rows / 2, cols}, 1 << k, reach);
    MarkBand(mask, {rows / 2, cols / 2, rows, cols}, 1 << k, reach);
  }
  // Without levels the low band is the image itself, and nothing reaches beyond the region.
  const int widening = levels == 0 ? 0 : ((1 << (levels - 1)) + 1) * w0;
  MarkBand(mask, {0, 0, image.Rows() >> levels, image.Cols() >> levels}, 1 << levels,
           {region, widening});
  return mask;
}

}  // namespace marovia::literal
