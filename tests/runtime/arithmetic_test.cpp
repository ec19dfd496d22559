#include <gtest/gtest.h>

#include "error_matchers.h"
#include "seluvorne/runtime.h"

namespace {

using seluvorne::errc::kDivisionByZero;
using seluvorne::errc::kOverflow;

TEST(Arithmetic, SixteenBitEdges) {
  EXPECT_EQ(vb::Add<std::int16_t>(32766, 1), 32767);
  EXPECT_RAISES(vb::Add<std::int16_t>(32767, 1), kOverflow);
  EXPECT_EQ(vb::Sub<std::int16_t>(-32767, 1), -32768);
  EXPECT_RAISES(vb::Sub<std::int16_t>(-32768, 1), kOverflow);
  EXPECT_RAISES(vb::Mul<std::int16_t>(256, 128), kOverflow);
  EXPECT_EQ(vb::Mul<std::int16_t>(-256, 128), -32768);
  EXPECT_RAISES(vb::IntDiv<std::int16_t>(-32768, -1), kOverflow);
  EXPECT_RAISES(vb::Narrow<std::int16_t>(32768), kOverflow);
  EXPECT_RAISES(vb::Narrow<std::int16_t>(-32769), kOverflow);
}

TEST(Arithmetic, ThirtyTwoBitEdges) {
  EXPECT_RAISES(vb::Add<std::int32_t>(INT32_MAX, 1), kOverflow);
  EXPECT_EQ(vb::Sub<std::int32_t>(INT32_MIN + 1, 1), INT32_MIN);
  EXPECT_RAISES(vb::Mul<std::int32_t>(65536, 32768), kOverflow);
}

TEST(Arithmetic, DivisionTruncatesAndModKeepsTheDividendsSign) {
  EXPECT_EQ(vb::IntDiv<std::int16_t>(7, 2), 3);
  EXPECT_EQ(vb::IntDiv<std::int16_t>(-7, 2), -3);
  EXPECT_EQ(vb::Mod<std::int16_t>(-7, 2), -1);
  EXPECT_EQ(vb::Mod<std::int16_t>(7, -2), 1);
  EXPECT_EQ(vb::Mod<std::int16_t>(163, 80), 3);
  EXPECT_RAISES(vb::IntDiv<std::int16_t>(1, 0), kDivisionByZero);
  EXPECT_RAISES(vb::Mod<std::int32_t>(1, 0), kDivisionByZero);
  EXPECT_EQ(vb::Fix(-2.7), -2);
  EXPECT_EQ(vb::Int(-2.7), -3);
}

}  // namespace
