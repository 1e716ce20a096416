// The header, the first threshold, and the raw symbols.
#include "coding/raw_symbols.h"
#include "format/file_header.h"
#include "passes/run.h"
#include "tests/support/testing.h"

namespace marovia {
namespace {

using test::CodeOf;
using enum WaveletKind;

// Budget 32768, 5 levels of 9/7, 300 x 517 and so padded, mean -1.5, first threshold 2^9.
const Bytes kHeader = {0, 0x80, 0, 0, 179, 0x2C, 1, 5, 2, 0, 0, 0xC0, 0xBF, 9};

TEST(FileHeader, HoldsItsFieldsLowestByteFirst) {
  const FileHeader header = ReadHeader(kHeader, true);
  EXPECT_EQ(header.budget, 32768);
  EXPECT_EQ(header.levels, 5);
  EXPECT_EQ(header.wavelet, kDaub97);
  EXPECT_TRUE((header.sides == Sides{300, 517}) && (header.CodedSides() == Sides{320, 544}));
  EXPECT_EQ(header.mean, -1.5F);
  EXPECT_EQ(header.exponent, 9);
  EXPECT_EQ(WriteHeader(header), kHeader);
  const FileHeader lossless = ReadHeader(ByteView(kHeader).subspan(4), false);
  EXPECT_FALSE(lossless.budget);
  EXPECT_EQ(WriteHeader(lossless), Bytes(kHeader.begin() + 4, kHeader.end()));
}

TEST(FileHeader, TellsThirteenLevelsFromAPaddedLine) {
  for (const FileHeader& header :
       {FileHeader{.levels = 13, .sides = {32000, 24576}},
        FileHeader{.wavelet = kInteger22, .sides = {2, 9}, .padded = true}}) {
    const Bytes file = WriteHeader(header);
    EXPECT_EQ(file[0], 131);
    const FileHeader read = ReadHeader(file, false);
    EXPECT_EQ(read.levels, header.levels);
    EXPECT_EQ(read.wavelet, header.wavelet);
    EXPECT_EQ(read.padded, header.padded);
  }
}

TEST(FileHeader, FailsOnFieldsThatDoNotFit) {
  for (const FileHeader& header :
       {FileHeader{.levels = 13, .sides = {9, 9}, .padded = true}, FileHeader{.levels = 26},
        FileHeader{.sides = {32768, 8}}, FileHeader{.sides = {8, 8}, .exponent = -1}})
    EXPECT_EQ(CodeOf([&] { WriteHeader(header); }), Errc::kOverflow);
}

// Wavelets 0 and 4; sides, two of which fit and one of which does not when padded; exponents, an
// infinite mean.
TEST(FileHeader, IsRefusedWithAFieldThatNoCompressorWrites) {
  const struct {
    std::size_t at;
    Bytes bytes;
  } cases[] = {{4, {50}},   {4, {182}},        {5, {0, 0}},         {5, {0, 0x80}},
               {7, {0, 0}}, {7, {0xFF, 0xFF}}, {5, {64, 1, 64, 1}}, {7, {0xE1, 0x7F}},
               {13, {32}},  {13, {255}},       {11, {0x80, 0x7F}}};
  for (const auto& c : cases) {
    Bytes file = kHeader;
    std::ranges::copy(c.bytes, file.begin() + static_cast<std::ptrdiff_t>(c.at));
    EXPECT_EQ(CodeOf([&] { ReadHeader(file, true); }), Errc::kMalformed) << c.at;
  }
  for (std::size_t length = 0; length < kHeader.size(); ++length) {
    const ByteView cut = ByteView(kHeader).first(length);
    EXPECT_EQ(CodeOf([&] { ReadHeader(cut, true); }), Errc::kMalformed) << length;
  }
}

TEST(Budget, IsTheRateOfAllPixelsOrOfWholeBitsARow) {
  const struct {
    double rate;
    Sides sides;
    std::int32_t bits, ofRows;
  } cases[] = {{0.5, {256, 256}, 32768, 32768},
               {1.5, {10, 3}, 45, 40},
               {0.5, {10, 3}, 15, 20},
               {0.5, {1, 5000}, 2500, 2500},
               {0.5, {5000, 1}, 2500, 0},
               {0.01, {150, 200}, 300, 300},
               {0.5, {1, 5}, 2, 2},
               {-1, {4, 4}, -16, -16},
               {1e-9, {9, 9}, 0, 0}};
  for (const auto& c : cases) {
    EXPECT_EQ(BitBudget(c.rate, c.sides), c.bits) << c.rate;
    EXPECT_EQ(BitBudgetOfRows(c.rate, c.sides), c.ofRows) << c.rate;
  }
  for (const auto budget : {BitBudget, BitBudgetOfRows}) {
    EXPECT_EQ(CodeOf([&] { budget(2.01, {32767, 32767}); }), Errc::kOverflow);
    EXPECT_EQ(CodeOf([&] { budget(1e9, {1, 8}); }), Errc::kOverflow);
  }
}

TEST(Budget, OfADecoderIsHeldToThatOfTheFile) {
  for (const std::int32_t stored : {99, 100, 101}) {
    EXPECT_EQ(SetBitBudget(stored, 100).bits, std::min(stored, 100));
    EXPECT_EQ(SetBitBudget(stored, 100).held, stored == 99);
  }
}

// With 2^n itself the exponent must be above n: no decoder could know that it was passed over.
TEST(FirstThreshold, LiesAboveEveryMagnitude) {
  for (int n = -3; n < 24; ++n) {
    const float power = std::ldexp(1.0F, n);
    for (const float most : {std::nextafter(power, 0.0F), power, std::nextafter(power, 1e9F)}) {
      const std::array coefficients = {0.0F, most / 3, -most, most / 2};
      const int exponent = std::max(0, most < power ? n : n + 1);
      EXPECT_EQ(GetThreshold(coefficients, kDaub97), exponent) << most;
      EXPECT_EQ(GetThreshold(coefficients, kInteger53), exponent) << most;
    }
  }
  EXPECT_EQ(GetThreshold(std::array{0.0F}, kDaub97), 0);
  EXPECT_EQ(GetThreshold(std::array{0.0F}, kInteger22), 1);
}

TEST(BitSymbols, ReadBackNumbersOfEveryLength) {
  Bytes stream;
  BitSymbolWriter writer(120, stream);
  std::vector<std::uint32_t> numbers;
  for (int digits = 0; digits <= kMostDigits; ++digits) {
    const std::uint32_t power = 1U << digits;
    for (const std::uint32_t number : {power, power + power / 3, 2 * power - 1}) {
      numbers.push_back(number);
      writer.Found(number, digits % 2 == 0);
      writer.Refine(digits % 3 == 0);
    }
  }
  writer.Finish();
  BitSymbolReader reader(120, stream);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    std::uint32_t number = 0;
    bool negative = false;
    bool moves = false;
    ASSERT_TRUE(reader.ReadNumber(number) && reader.ReadSign(negative) &&
                reader.ReadRefinement(moves));
    EXPECT_EQ(number, numbers[i]);
    EXPECT_EQ(negative, i / 3 % 2 == 0);
    EXPECT_EQ(moves, i / 3 % 3 == 0);
  }
}

}  // namespace
}  // namespace marovia
