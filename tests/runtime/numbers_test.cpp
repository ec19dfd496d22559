// Checked arithmetic, rounding, and numbers to and from text and Variants.

#include <gtest/gtest.h>

#include <cmath>

#include "error_matchers.h"
#include "seluvorne/runtime.h"

namespace {

using namespace seluvorne::errc;
using vb::Variant;

TEST(Arithmetic, SixteenAndThirtyTwoBitEdgesRaiseSix) {
  EXPECT_EQ(vb::Add<std::int16_t>(32766, 1), 32767);
  EXPECT_RAISES(vb::Add<std::int16_t>(32767, 1), kOverflow);
  EXPECT_EQ(vb::Sub<std::int16_t>(-32767, 1), -32768);
  EXPECT_RAISES(vb::Sub<std::int16_t>(-32768, 1), kOverflow);
  EXPECT_RAISES(vb::Mul<std::int16_t>(256, 128), kOverflow);
  EXPECT_EQ(vb::Mul<std::int16_t>(-256, 128), -32768);
  EXPECT_RAISES(vb::IntDiv<std::int16_t>(-32768, -1), kOverflow);
  EXPECT_RAISES(vb::Add<std::int32_t>(INT32_MAX, 1), kOverflow);
  EXPECT_EQ(vb::Sub<std::int32_t>(INT32_MIN + 1, 1), INT32_MIN);
  EXPECT_RAISES(vb::Mul<std::int32_t>(65536, 32768), kOverflow);
  // Division truncates; the remainder takes the dividend's sign.
  EXPECT_EQ(vb::IntDiv<std::int16_t>(-7, 2), -3);
  EXPECT_EQ(vb::Mod<std::int16_t>(-7, 2), -1);
  EXPECT_EQ(vb::Mod<std::int16_t>(7, -2), 1);
  EXPECT_RAISES(vb::IntDiv<std::int16_t>(1, 0), kDivisionByZero);
  EXPECT_RAISES(vb::Mod<std::int32_t>(1, 0), kDivisionByZero);
}

TEST(Rounding, CIntAndCLngRoundHalfToEvenFormatHalfAwayFromZero) {
  const std::pair<double, int> rounded[] = {{0.5, 0},     {1.5, 2},         {2.5, 2},
                                            {-1.5, -2},   {-2.5, -2},       {0.4999, 0},
                                            {421.5, 422}, {32766.5, 32766}, {-32768.5, -32768}};
  for (auto [value, expected] : rounded)
    EXPECT_EQ(vb::CInt(value), expected) << value;
  for (double value : {32767.5, -32768.6, std::nan("")})
    EXPECT_RAISES(vb::CInt(value), kOverflow);
  EXPECT_EQ(vb::CLng(-2147483648.5), INT32_MIN);
  EXPECT_RAISES(vb::CLng(2147483647.5), kOverflow);
  EXPECT_EQ(vb::Format(2.5, "000"), "003");
  EXPECT_EQ(vb::Format(-2.5, "00000"), "-00003");
  EXPECT_EQ(vb::Format(1234, "000"), "1234");
  EXPECT_RAISES(vb::Format(1, "#,##0"), kInvalidCall);
}

TEST(NumberText, StrKeepsTheBlankAndDropsTheLeadingZeroStrTrimmedDropsTheBlank) {
  EXPECT_EQ(vb::Str(std::int16_t{5}), " 5");
  EXPECT_EQ(vb::Str(-0.5), "-.5");
  EXPECT_EQ(vb::Str(0.1 + 0.2), " .3");
  EXPECT_EQ(vb::Str(1e20), " 1E+20");
  EXPECT_EQ(vb::Str(0.1f), " .1");
  EXPECT_EQ(vb::StrTrimmed(std::int16_t{499}), "499");
  EXPECT_EQ(vb::StrTrimmed(-3), "-3");
  EXPECT_EQ(vb::CStr(Variant(0.5)), "0.5");  // no blank, and the zero kept
}

TEST(VariantCoercion, TextsMustBeNumbersAsAWholeAndEmptyNullAndArraysHaveTheirRules) {
  EXPECT_EQ(vb::CInt(Variant(" 12 ")), 12);
  EXPECT_EQ(vb::CInt(Variant("2.5")), 2);
  EXPECT_EQ(vb::CInt(Variant("&H10")), 16);
  EXPECT_EQ(vb::CInt(Variant("true")), -1);
  EXPECT_RAISES(vb::CInt(Variant("7abc")), kTypeMismatch);
  EXPECT_RAISES(vb::CInt(Variant("")), kTypeMismatch);
  EXPECT_RAISES(vb::CInt(Variant("40000")), kOverflow);
  EXPECT_EQ(vb::CInt(Variant()), 0);
  EXPECT_RAISES(vb::CStr(Variant(vb::Null)), kInvalidUseOfNull);
  EXPECT_RAISES(vb::CBool(Variant("yes")), kTypeMismatch);
  EXPECT_RAISES(vb::CInt(Variant(vb::Array<std::int16_t>({1}))), kTypeMismatch);
  EXPECT_NE(Variant(std::int16_t{1}), Variant(std::int32_t{1}));
}

}  // namespace
