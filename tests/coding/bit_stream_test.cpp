#include "coding/bit_stream.h"

#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "coding/wdr_symbols.h"
#include "tests/support/plain_symbols.h"

namespace marovia {
namespace {

TEST(BitStream, MovesManyBitsAtOnceAsThePlainOneMovesThemSingly) {
  std::mt19937_64 random(4);
  for (int round = 0; round < 200; ++round) {
    std::vector<std::pair<std::uint64_t, int>> pieces;
    Bytes bytes;
    BitWriter writer(bytes);
    plain::Bits expected;
    for (int i = 0; i < 40; ++i) {
      const int count = static_cast<int>(random() % 33);
      const std::uint64_t bits = random() & ((std::uint64_t{1} << count) - 1);
      pieces.emplace_back(bits, count);
      writer.Append(bits, count);
      for (int b = count; b > 0; --b) expected.Code(static_cast<int>(bits >> (b - 1) & 1));
      ASSERT_EQ(writer.BitsSent(), expected.count);
    }
    writer.Finish();
    ASSERT_EQ(bytes, expected.written);
    BitReader reader(bytes);
    for (const auto& [bits, count] : pieces) ASSERT_EQ(reader.GetBits(count), bits);
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
