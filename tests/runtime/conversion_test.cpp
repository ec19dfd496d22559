#include <gtest/gtest.h>

#include <cmath>
#include <ostream>

#include "error_matchers.h"
#include "seluvorne/runtime.h"

namespace {

using namespace seluvorne::errc;
using vb::Variant;

struct RoundCase {
  double value;
  int expected;  // INT32_MIN: raises Overflow
};

std::ostream& operator<<(std::ostream& out, const RoundCase& c) {
  return out << c.value;
}

class CIntRounding : public testing::TestWithParam<RoundCase> {};

TEST_P(CIntRounding, RoundsHalfToEvenWithinSixteenBits) {
  const RoundCase& c = GetParam();
  if (c.expected == INT32_MIN)
    EXPECT_RAISES(vb::CInt(c.value), kOverflow);
  else
    EXPECT_EQ(vb::CInt(c.value), c.expected) << c.value;
}

INSTANTIATE_TEST_SUITE_P(Halves, CIntRounding,
                         testing::Values(RoundCase{0.5, 0}, RoundCase{1.5, 2}, RoundCase{2.5, 2},
                                         RoundCase{-0.5, 0}, RoundCase{-1.5, -2},
                                         RoundCase{-2.5, -2}, RoundCase{0.4999, 0},
                                         RoundCase{420.5, 420}, RoundCase{421.5, 422},
                                         RoundCase{32767.4, 32767}, RoundCase{32766.5, 32766},
                                         RoundCase{32767.5, INT32_MIN}, RoundCase{-32768.5, -32768},
                                         RoundCase{-32768.6, INT32_MIN},
                                         RoundCase{NAN, INT32_MIN}));

TEST(CLng, RoundsHalfToEvenWithinThirtyTwoBits) {
  EXPECT_EQ(vb::CLng(2147483646.5), 2147483646);
  EXPECT_RAISES(vb::CLng(2147483647.5), kOverflow);
  EXPECT_EQ(vb::CLng(-2147483648.5), INT32_MIN);
  EXPECT_RAISES(vb::CSng(1e39), kOverflow);
}

struct ValCase {
  const char* text;
  double expected;
};

std::ostream& operator<<(std::ostream& out, const ValCase& c) {
  return out << '"' << c.text << '"';
}

class ValPrefix : public testing::TestWithParam<ValCase> {};

TEST_P(ValPrefix, ReadsTheLeadingNumber) {
  EXPECT_DOUBLE_EQ(vb::Val(GetParam().text), GetParam().expected) << '"' << GetParam().text << '"';
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ValPrefix,
    testing::Values(ValCase{"7abc", 7}, ValCase{"abc", 0}, ValCase{"", 0}, ValCase{"0.4", 0.4},
                    ValCase{" 12", 12}, ValCase{"-3", -3}, ValCase{"+4", 4}, ValCase{"1e3", 1000},
                    ValCase{"1D2", 100}, ValCase{"1e", 1}, ValCase{"1e+", 1}, ValCase{".5", 0.5},
                    ValCase{"1.2.3", 1.2}, ValCase{"1,000", 1}, ValCase{"1 2", 12},
                    ValCase{"\t- 3", -3}, ValCase{"--1", 0}, ValCase{".", 0}, ValCase{"&H10", 16},
                    ValCase{"&hff", 255}, ValCase{"&HFFFF", -1}, ValCase{"&H8000", -32768},
                    ValCase{"&H10000", 65536}, ValCase{"&HFFFFFFFF", -1}, ValCase{"&O17", 15},
                    ValCase{"&H", 0}, ValCase{"&X1", 0}));

TEST(Val, OverflowBeyondDouble) {
  EXPECT_RAISES(vb::Val("1e400"), kOverflow);
  EXPECT_RAISES(vb::Val("&H100000000"), kOverflow);
  EXPECT_EQ(vb::Val("1e-400"), 0);
}

TEST(NumberText, StrKeepsTheBlankAndDropsTheLeadingZero) {
  EXPECT_EQ(vb::Str(std::int16_t{5}), " 5");
  EXPECT_EQ(vb::Str(-5), "-5");
  EXPECT_EQ(vb::Str(0.5), " .5");
  EXPECT_EQ(vb::Str(-0.5), "-.5");
  EXPECT_EQ(vb::Str(0.1 + 0.2), " .3");
  EXPECT_EQ(vb::Str(1e20), " 1E+20");
  EXPECT_EQ(vb::Str(123456789012345.0), " 123456789012345");
  EXPECT_EQ(vb::Str(0.1f), " .1");
  EXPECT_EQ(vb::Str(-0.0), " 0");
  EXPECT_EQ(vb::StrTrimmed(std::int16_t{499}), "499");
  EXPECT_EQ(vb::StrTrimmed(-3), "-3");
}

TEST(NumberText, FormatPadsAndRoundsHalfAwayFromZero) {
  EXPECT_EQ(vb::Format(5, "000"), "005");
  EXPECT_EQ(vb::Format(499, "000"), "499");
  EXPECT_EQ(vb::Format(1234, "000"), "1234");
  EXPECT_EQ(vb::Format(2.5, "000"), "003");
  EXPECT_EQ(vb::Format(-5, "000"), "-005");
  EXPECT_EQ(vb::Format(42, "00000"), "00042");
  EXPECT_RAISES(vb::Format(1, "#,##0"), kInvalidCall);
}

TEST(VariantCoercion, TextsMustBeNumbersAsAWhole) {
  EXPECT_EQ(vb::CInt(Variant("12")), 12);
  EXPECT_EQ(vb::CInt(Variant(" 12 ")), 12);
  EXPECT_EQ(vb::CInt(Variant("2.5")), 2);
  EXPECT_EQ(vb::CInt(Variant("&H10")), 16);
  EXPECT_EQ(vb::CInt(Variant("true")), -1);
  EXPECT_EQ(vb::CDbl(Variant("1e3")), 1000);
  EXPECT_RAISES(vb::CInt(Variant("7abc")), kTypeMismatch);
  EXPECT_RAISES(vb::CInt(Variant("")), kTypeMismatch);
  EXPECT_RAISES(vb::CInt(Variant("40000")), kOverflow);
  EXPECT_TRUE(vb::IsNumeric(Variant(" 3.5 ")));
  EXPECT_FALSE(vb::IsNumeric(Variant("3.5x")));
}

TEST(VariantCoercion, EmptyNullBooleanAndArrays) {
  EXPECT_EQ(vb::CInt(Variant()), 0);
  EXPECT_EQ(vb::CStr(Variant()), "");
  EXPECT_FALSE(vb::CBool(Variant()));
  EXPECT_RAISES(vb::CInt(Variant(vb::Null)), kInvalidUseOfNull);
  EXPECT_RAISES(vb::CStr(Variant(vb::Null)), kInvalidUseOfNull);
  EXPECT_EQ(vb::CInt(Variant(true)), -1);
  EXPECT_EQ(vb::CStr(Variant(true)), "True");
  EXPECT_TRUE(vb::CBool(Variant("-1")));
  EXPECT_RAISES(vb::CBool(Variant("yes")), kTypeMismatch);
  EXPECT_EQ(vb::CStr(Variant(1.5)), "1.5");
  EXPECT_EQ(vb::CStr(Variant(0.5)), "0.5");
  EXPECT_EQ(vb::CStr(Variant(std::int32_t{70000})), "70000");
  EXPECT_RAISES(vb::CInt(Variant(vb::Array<std::int16_t>({1}))), kTypeMismatch);
  EXPECT_RAISES(vb::CObj(Variant(3)), kTypeMismatch);
  EXPECT_EQ(vb::CObj(Variant()), nullptr);
}

TEST(VariantCoercion, LiteralsTakeTheSmallestType) {
  EXPECT_EQ(vb::Literal(5).type(), vb::VarType::Integer);
  EXPECT_EQ(vb::Literal(-32768).type(), vb::VarType::Integer);
  EXPECT_EQ(vb::Literal(40000).type(), vb::VarType::Long);
  EXPECT_EQ(vb::Literal(5'000'000'000).type(), vb::VarType::Double);
}

TEST(VariantValue, CopyingCopiesTheArrayAndEqualityComparesTypes) {
  Variant a(vb::Array<std::string>({1}));
  a.array<std::string>()(0) = "x";
  Variant b = a;
  b.array<std::string>()(0) = "y";
  EXPECT_EQ(a.array<std::string>()(0), "x");
  EXPECT_EQ(b.arrayElementType(), vb::VarType::String);
  EXPECT_RAISES(a.array<std::int16_t>(), kTypeMismatch);
  EXPECT_NE(Variant(std::int16_t{1}), Variant(std::int32_t{1}));
  EXPECT_EQ(Variant("a"), Variant(std::string("a")));
  EXPECT_NE(a, b);
}

TEST(ErrorText, NamesTheNumberTheSourceWhenKnownAndTheDescription) {
  EXPECT_STREQ(seluvorne::MakeError(kTypeMismatch, {}, "clsThing").what(),
               "Error 13 (clsThing): Type mismatch");
  EXPECT_STREQ(seluvorne::MakeError(kFileNotFoundDb, "a.mdb", "").what(),
               "Error 3024: Could not find file 'a.mdb'.");
}

}  // namespace
