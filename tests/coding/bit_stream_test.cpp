#include "coding/bit_stream.h"

#include <gtest/gtest.h>
#include <random>
#include <string_view>
#include <vector>

#include "coding/wdr_symbols.h"
#include "tests/support/literal_bits.h"
#include "tests/support/test_images.h"

namespace marovia {
namespace {

TEST(BitWriter, PutsTheFirstBitInTheHighestPlaceAndFillsUpWithZeros) {
  const struct {
    std::string_view bits;
    Bytes bytes;
  } cases[] = {{"", {}},           {"1", {128}},   {"10000000", {128}},
               {"00000001", {1}},  {"101", {160}}, {"00000001011", {1, 96}},
               {"11111111", {255}}};
  for (const auto& c : cases) {
    Bytes bytes;
    BitWriter writer(bytes);
    for (const char bit : c.bits) writer.TransmitBit(bit == '1' ? 1 : 0);
    EXPECT_EQ(writer.BitsSent(), static_cast<std::int64_t>(c.bits.size()));
    writer.Finish();
    EXPECT_EQ(bytes, c.bytes) << c.bits;
  }
}

TEST(BitWriter, TakesManyBitsAtOnceAsThePlainOneTakesThemSingly) {
  std::mt19937_64 random(4);
  for (int round = 0; round < 200; ++round) {
    Bytes bytes;
    BitWriter writer(bytes);
    Bytes expected;
    literal::BitWriter plain{&expected};
    for (int i = 0; i < 40; ++i) {
      const int count = static_cast<int>(random() % 33);
      const std::uint64_t bits = random() & ((std::uint64_t{1} << count) - 1);
      writer.Append(bits, count);
      for (int b = count; b > 0; --b) {
        literal::TransmitBit(static_cast<int>(bits >> (b - 1) & 1), plain);
      }
      ASSERT_EQ(writer.BitsSent(), plain.sent);
    }
    literal::WritePartialByte(plain);
    writer.Finish();
    ASSERT_EQ(bytes, expected);
  }
}

TEST(BitReader, ReadsZerosPastTheEndAndCountsThem) {
  const Bytes bytes = {0b10110001, 0xFF, 0x01};
  for (int step = 1; step <= 32; ++step) {
    BitReader reader(bytes);
    std::uint64_t all = 0;
    for (int read = 0; read < 24; read += step) {
      const std::uint64_t bits = reader.GetBits(step);
      all = read + step <= 24 ? all << step | bits
                              : (all << (24 - read)) | bits >> (read + step - 24);
      EXPECT_EQ(reader.PastEnd(), read + step > 24);
    }
    EXPECT_EQ(all, 0xB1FF01U) << "in steps of " << step;
    EXPECT_EQ(reader.GetBits(32), 0U);
    EXPECT_TRUE(reader.PastEnd());
    EXPECT_EQ(reader.BitsRead(), (23 / step + 1) * step + 32);
  }
}

TEST(BitSymbols, SendTheDigitsOfANumberFromTheLowest) {
  const struct {
    std::uint32_t number;
    std::string_view bits;  // up to the end of a pass
  } cases[] = {{1, "1"}, {2, "001"}, {3, "011"}, {6, "00011"}, {11, "0101001"}};
  for (const auto& c : cases) {
    Bytes bytes;
    BitSymbolWriter writer(120, bytes);
    writer.EndOfPass(c.number);
    EXPECT_EQ(writer.BitsSent(), 120 + static_cast<std::int64_t>(c.bits.size()));
    Bytes expected;
    literal::BitWriter plain{&expected};
    for (const char bit : c.bits) literal::TransmitBit(bit - '0', plain);
    literal::WritePartialByte(plain);
    expected.push_back(128);
    writer.Finish();
    EXPECT_EQ(bytes, expected) << c.number;
  }
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
