// The library's options for what the plain codec was asked to do, which takes a rate as whole bits
// a row.
#pragma once

#include <algorithm>

#include "marovia/codec.h"

#include "coding/file_header.h"
#include "tests/support/literal_coder.h"

namespace marovia::test {

// The rate at which all pixels together get the bits that the rows get at `rate`. Above 0, as a
// compressor's has to be.
inline double RateOfRows(double rate, Sides sides) {
  const double pixels = static_cast<double>(sides.rows) * sides.cols;
  return std::max(BitBudgetOfRows(rate, sides) / pixels, 1e-12);
}

inline CompressOptions UnpaddedOptions(const literal::Settings& settings, const Image& image) {
  CompressOptions options;
  options.kind = settings.kind;
  options.wavelet = settings.wavelet;
  options.levels = settings.levels;
  options.rate = RateOfRows(settings.rate, {image.Rows(), image.Cols()});
  options.region = settings.region;
  options.share = settings.share;
  options.pad = false;
  return options;
}

inline DecompressOptions OptionsOfRate(double rate) {
  DecompressOptions options;
  options.rate = rate;
  return options;
}

// Of a file of any size.
inline DecompressOptions OptionsOfRowRate(double rate, ByteView file, FileKind kind) {
  const FileInfo info = Inspect(file, kind);
  return OptionsOfRate(RateOfRows(rate, {info.rows, info.cols}));
}

}  // namespace marovia::test
