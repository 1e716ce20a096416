// The library's options for what the plain codec was asked to do.
#pragma once

#include "marovia/codec.h"

#include "tests/support/literal_coder.h"

namespace marovia::test {

inline CompressOptions UnpaddedOptions(const literal::Settings& settings) {
  CompressOptions options;
  options.kind = settings.kind;
  options.wavelet = settings.wavelet;
  options.levels = settings.levels;
  options.rate = settings.rate;
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

}  // namespace marovia::test
