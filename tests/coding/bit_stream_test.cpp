#include "coding/raw_symbols.h"
#include "tests/support/testing.h"

namespace marovia {
namespace {

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
