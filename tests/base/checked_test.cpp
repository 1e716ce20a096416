#include "base/checked.h"

#include "tests/support/testing.h"

namespace marovia {
namespace {

using test::CodeOf;

TEST(Rounding, TakesTheEvenOfTwoEquallyNear) {
  const double cases[][2] = {
      {0.5, 0},   {1.5, 2}, {2.5, 2},  {3.5, 4},   {-0.5, 0},           {-1.5, -2},
      {-2.5, -2}, {4.5, 4}, {2.51, 3}, {-3.4, -3}, {1e15 + 1, 1e15 + 1}};
  for (const auto& [value, rounded] : cases) EXPECT_EQ(RoundHalfEven(value), rounded) << value;
}

TEST(Rounding, FailsWhereTheResultLeavesItsType) {
  EXPECT_EQ(ToInt16(32767.4), 32767);
  EXPECT_EQ(ToInt16(-32768.5), -32768);
  EXPECT_EQ(CodeOf([] { ToInt16(32767.5); }), Errc::kOverflow);
  EXPECT_EQ(CodeOf([] { ToByte(-1); }), Errc::kOverflow);
  EXPECT_EQ(CodeOf([] { ToInt32(2147483647.5); }), Errc::kOverflow);
  EXPECT_EQ(CodeOf([] { ToInt32(std::numeric_limits<double>::quiet_NaN()); }), Errc::kOverflow);
  EXPECT_EQ(CheckedMul32(65536, 32767), 2147418112);
  EXPECT_EQ(CodeOf([] { CheckedMul32(65536, 32768); }), Errc::kOverflow);
}

}  // namespace
}  // namespace marovia
