// The recorded results of tests/data: what each coding of a generated image gives.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/literal_coder.h"

namespace marovia::test {

struct GoldenRow {
  std::string label;  // the columns that say what is coded
  std::string image;  // a name that NamedImage knows
  int rows = 0;
  int cols = 0;
  literal::Settings settings;
  std::size_t bytes = 0;
  std::string fileHash;
  std::string pixelHash;          // decoded at the row's own rate
  std::string halfRatePixelHash;  // "-" where a kind has no rate
  std::string psnr;               // 7 digits; "inf" for identical images
  std::string halfRatePsnr;
  std::size_t reportLines = 0;  // three a report of the compressor
  int levelsUsed = 0;
  int exponent = 0;
};

// A file cut to its first bytes, and what it still decodes to at its full rate.
struct CutRow {
  std::string label;
  std::string image;
  int rows = 0;
  int cols = 0;
  literal::Settings settings;
  std::size_t bytesKept = 0;
  std::string pixelHash;
  std::string psnr;  // 4 decimals
};

// Throw std::runtime_error where a table is missing or holds a row that does not read.
std::vector<GoldenRow> ReadGoldenRows(const std::string& path);
std::vector<CutRow> ReadCutRows(const std::string& path);

}  // namespace marovia::test
