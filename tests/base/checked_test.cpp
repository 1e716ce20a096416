#include "base/checked.h"

#include <gtest/gtest.h>
#include <limits>

#include "marovia/error.h"

#include "base/shift.h"
#include "tests/support/code_of.h"

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
  EXPECT_EQ(CodeOf([] { ToInt16(40000); }), Errc::kOverflow);
  EXPECT_EQ(CodeOf([] { ToByte(-1); }), Errc::kOverflow);
  EXPECT_EQ(CodeOf([] { ToInt32(2147483647.5); }), Errc::kOverflow);
  EXPECT_EQ(CodeOf([] { ToInt32(std::numeric_limits<double>::quiet_NaN()); }), Errc::kOverflow);
}

TEST(CheckedArithmetic, FailsOnTheFirstValueBeyondTheType) {
  constexpr auto kMax = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(CheckedAdd32(kMax - 1, 1), kMax);
  EXPECT_EQ(CodeOf([] { CheckedAdd32(kMax, 1); }), Errc::kOverflow);
  EXPECT_EQ(CheckedMul32(65536, 32767), 2147418112);
  EXPECT_EQ(CodeOf([] { CheckedMul32(65536, 32768); }), Errc::kOverflow);
}

TEST(Shifts, RoundTowardZeroAndCheckTheirRange) {
  EXPECT_EQ(RightShift(-5, 1), -2);
  EXPECT_EQ(RightShift(5, 1), 2);
  EXPECT_EQ(LeftShift(-16384, 1), -32768);
  EXPECT_EQ(CodeOf([] { LeftShift(16384, 1); }), Errc::kOverflow);
  EXPECT_EQ(CodeOf([] { RightShift(1, 15); }), Errc::kIndex);
  EXPECT_EQ(CodeOf([] { RightShift(1, -1); }), Errc::kIndex);
  EXPECT_EQ(PowerOfTwo(14), 16384);
}

}  // namespace
}  // namespace marovia
