#include "coding/file_header.h"

#include <gtest/gtest.h>

#include "tests/support/code_of.h"

namespace marovia {
namespace {

using test::CodeOf;

// Budget 32768, 5 levels of 9/7, 300 x 517, mean -1.5, first threshold 2^9.
const Bytes kHeader = {0, 0x80, 0, 0, 51, 0x2C, 1, 5, 2, 0, 0, 0xC0, 0xBF, 9};

TEST(FileHeader, HoldsItsFieldsLowestByteFirst) {
  Bytes file;
  AppendBudget(file, 32768);
  AppendGeometry(file, 5, WaveletKind::kDaub97, 300, 517);
  AppendMean(file, -1.5F);
  AppendExponent(file, 9);
  EXPECT_EQ(file, kHeader);

  const FileHeader header = ReadHeader(file, true);
  EXPECT_EQ(header.budget, 32768);
  EXPECT_EQ(header.levels, 5);
  EXPECT_EQ(header.wavelet, WaveletKind::kDaub97);
  EXPECT_EQ(header.rows, 300);
  EXPECT_EQ(header.cols, 517);
  EXPECT_EQ(header.mean, -1.5F);
  EXPECT_EQ(header.exponent, 9);
  const FileHeader lossless = ReadHeader(ByteView(file).subspan(4), false);
  EXPECT_FALSE(lossless.budget);
  EXPECT_EQ(lossless.cols, 517);
}

TEST(FileHeader, FailsOnFieldsThatDoNotFit) {
  Bytes file;
  EXPECT_EQ(CodeOf([&] { AppendGeometry(file, 26, WaveletKind::kDaub97, 8, 8); }), Errc::kOverflow);
  EXPECT_EQ(CodeOf([&] { AppendGeometry(file, 1, WaveletKind::kDaub97, 32768, 8); }),
            Errc::kOverflow);
  EXPECT_EQ(CodeOf([&] { AppendExponent(file, -1); }), Errc::kOverflow);
}

TEST(FileHeader, IsRefusedWithAFieldThatNoCompressorWrites) {
  const struct {
    std::size_t at;
    std::uint8_t low, high;
  } cases[] = {
      {4, 50, 44},     {4, 54, 1},  {5, 0, 0},    {5, 0, 0x80},    {7, 0, 0},
      {7, 0xFF, 0xFF}, {13, 32, 0}, {13, 255, 0}, {11, 0x80, 0x7F}};  // wavelets 0 and 4, sides,
                                                                      // exponents, an infinite mean
  for (const auto& c : cases) {
    Bytes file = kHeader;
    file.push_back(0);
    file[c.at] = c.low;
    file[c.at + 1] = c.high;
    EXPECT_EQ(CodeOf([&] { ReadHeader(file, true); }), Errc::kMalformed) << c.at;
  }
  for (std::size_t length = 0; length < kHeader.size(); ++length) {
    const ByteView cut = ByteView(kHeader).first(length);
    EXPECT_EQ(CodeOf([&] { ReadHeader(cut, true); }), Errc::kMalformed) << length;
  }
}

TEST(Budget, IsTheRoundedBitsOfARowTimesTheRows) {
  const struct {
    double rate;
    int rows, cols;
    std::int32_t bits;
  } cases[] = {{0.5, 256, 256, 32768}, {1.5, 10, 3, 40}, {0.5, 10, 3, 20}, {0.5, 10, 5, 20},
               {0, 8, 8, 0},           {-1, 4, 4, -16},  {1e-9, 9, 9, 0}};
  for (const auto& c : cases) EXPECT_EQ(BitBudget(c.rate, c.rows, c.cols), c.bits) << c.rate;
  EXPECT_EQ(CodeOf([] { BitBudget(2.01, 32767, 32767); }), Errc::kOverflow);
  EXPECT_EQ(CodeOf([] { BitBudget(1e9, 1, 8); }), Errc::kOverflow);
}

TEST(Budget, OfADecoderIsHeldToThatOfTheFile) {
  EXPECT_EQ(SetBitBudget(100, 2, 10, 5).bits, 100);
  EXPECT_FALSE(SetBitBudget(100, 2, 10, 5).held);
  EXPECT_TRUE(SetBitBudget(99, 2, 10, 5).held);
  EXPECT_EQ(SetBitBudget(99, 2, 10, 5).bits, 99);
  EXPECT_EQ(SetBitBudget(101, 2, 10, 5).bits, 100);
}

}  // namespace
}  // namespace marovia
