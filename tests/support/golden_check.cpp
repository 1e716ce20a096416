#include "tests/support/golden_check.h"

#include <cmath>
#include <cstddef>
#include <gtest/gtest.h>
#include <iomanip>
#include <optional>
#include <sstream>

#include "base/number_text.h"
#include "tests/support/sha256.h"
#include "tests/support/test_images.h"

namespace marovia::test {
namespace {

// In decibels of a peak of 255, with the sum of squares held as a Sum.
template <class Sum>
std::optional<Sum> Psnr(const Image& a, const Image& b) {
  Sum sum = 0;
  for (std::size_t i = 0; i < a.Size(); ++i) {
    const double difference = static_cast<double>(a.Samples()[i]) - b.Samples()[i];
    sum = static_cast<Sum>(sum + difference * difference);
  }
  const auto mse = static_cast<Sum>(static_cast<double>(sum) / static_cast<double>(a.Size()));
  if (mse == 0) return {};
  return static_cast<Sum>(10 * std::log(255.0 / mse * 255.0) / std::log(10.0));
}

// As the codec's own measure has it: the digits depend on the sum in single precision.
std::string SevenDigits(const Image& a, const Image& b) {
  const std::optional<float> psnr = Psnr<float>(a, b);
  return psnr ? TrimmedNumberText(*psnr) : "inf";
}

// The table of cut files was made with an exact sum.
std::string FourDecimals(const Image& a, const Image& b) {
  const std::optional<double> psnr = Psnr<double>(a, b);
  if (!psnr) return "inf";
  std::ostringstream text;
  text << std::fixed << std::setprecision(4) << *psnr;
  return text.str();
}

void CheckEncoding(const literal::Encoded& encoded, const GoldenRow& row) {
  EXPECT_EQ(encoded.file.size(), row.bytes);
  EXPECT_EQ(Sha256(encoded.file), row.fileHash);
  EXPECT_EQ(3 * encoded.passes.size(), row.reportLines);
  EXPECT_EQ(encoded.levels, row.levelsUsed);
  EXPECT_EQ(encoded.exponent, row.exponent);
}

void CheckRow(const GoldenRow& row, const CodecUnderTest& codec) {
  const Image image = NamedImage(row.image, row.rows, row.cols);
  const literal::Encoded encoded = codec.compress(image, row.settings);
  CheckEncoding(encoded, row);

  const FileKind kind = row.settings.kind;
  const Image full = codec.decompress(encoded.file, kind, row.settings.rate);
  EXPECT_EQ(Sha256(full.Samples()), row.pixelHash);
  EXPECT_EQ(SevenDigits(image, full), row.psnr);
  if (kind == FileKind::kAwg) return;
  const Image half = codec.decompress(encoded.file, kind, row.settings.rate / 2);
  EXPECT_EQ(Sha256(half.Samples()), row.halfRatePixelHash);
  EXPECT_EQ(SevenDigits(image, half), row.halfRatePsnr);
}

void CheckRow(const CutRow& row, const CodecUnderTest& codec) {
  const Image image = NamedImage(row.image, row.rows, row.cols);
  Bytes file = codec.compress(image, row.settings).file;
  ASSERT_GT(file.size(), row.bytesKept);
  file.resize(row.bytesKept);
  const Image decoded = codec.decompress(file, row.settings.kind, row.settings.rate);
  EXPECT_EQ(Sha256(decoded.Samples()), row.pixelHash);
  EXPECT_EQ(FourDecimals(image, decoded), row.psnr);
}

}  // namespace

void CheckGoldenRows(const std::string& dataFolder, const CodecUnderTest& codec) {
  for (const GoldenRow& row : ReadGoldenRows(dataFolder + "/expected_results.tsv")) {
    SCOPED_TRACE(row.label);
    CheckRow(row, codec);
  }
}

void CheckCutRows(const std::string& dataFolder, const CodecUnderTest& codec) {
  for (const CutRow& row : ReadCutRows(dataFolder + "/cut_files.tsv")) {
    SCOPED_TRACE(row.label);
    CheckRow(row, codec);
  }
}

}  // namespace marovia::test
