#include <gtest/gtest.h>

#include <ostream>

#include "error_matchers.h"
#include "seluvorne/paths.h"
#include "seluvorne/runtime.h"

namespace {

using seluvorne::errc::kInvalidCall;

TEST(Text, CountsCharactersNotBytes) {
  EXPECT_EQ(vb::Len("X1通り"), 4);
  EXPECT_EQ(vb::Len("a😀b"), 3);
  EXPECT_EQ(vb::Len("\xff\xfe"), 2);  // stray bytes count one each
  EXPECT_EQ(vb::Left("X1通り", 3), "X1通");
  EXPECT_EQ(vb::Left("ab", 9), "ab");
  EXPECT_EQ(vb::Right("ふかし左", 2), "し左");
  EXPECT_EQ(vb::Mid("あいうえお", 2, 2), "いう");
  EXPECT_EQ(vb::Mid("あいうえお", 4), "えお");
  EXPECT_EQ(vb::Mid("あい", 5), "");
  EXPECT_RAISES(vb::Mid("a", 0), kInvalidCall);
  EXPECT_RAISES(vb::Left("a", -1), kInvalidCall);
}

TEST(Text, InStrAnswersCharacterPositions) {
  EXPECT_EQ(vb::InStr("あいう", "う"), 3);
  EXPECT_EQ(vb::InStr("X3通り(Y1～Y5間)", "～"), 8);
  EXPECT_EQ(vb::InStr(2, "abab", "ab"), 3);
  EXPECT_EQ(vb::InStr("abc", "d"), 0);
  EXPECT_EQ(vb::InStr(2, "abc", ""), 2);
  EXPECT_EQ(vb::InStr(5, "abc", "a"), 0);
  EXPECT_EQ(vb::InStr("ab", "abc"), 0);
  EXPECT_RAISES(vb::InStr(0, "abc", "a"), kInvalidCall);
}

TEST(Text, TrimRemovesOnlyBlanks) {
  EXPECT_EQ(vb::Trim("  Y2通り "), "Y2通り");
  EXPECT_EQ(vb::Trim(" \ta\t "), "\ta\t");
  EXPECT_EQ(vb::Trim("   "), "");
  EXPECT_EQ(vb::LTrim(" a "), "a ");
  EXPECT_EQ(vb::RTrim(" a "), " a");
  EXPECT_EQ(vb::Trim("\u3000a"), "\u3000a");  // the ideographic space is no blank
}

TEST(Text, SplitKeepsEmptyPartsAndGivesNoneForEmptyText) {
  vb::Array<std::string> parts = vb::Split("450,,0", ",");
  ASSERT_EQ(parts.UBound(), 2);
  EXPECT_EQ(parts(0), "450");
  EXPECT_EQ(parts(1), "");
  EXPECT_EQ(parts(2), "0");
  EXPECT_EQ(vb::Split("", ",").UBound(), -1);
  EXPECT_EQ(vb::Split("abc", ",").UBound(), 0);
  EXPECT_EQ(vb::Split("a,", ",").UBound(), 1);
}

struct WidthCase {
  const char* text;
  int width;
};

std::ostream& operator<<(std::ostream& out, const WidthCase& c) {
  return out << c.text;
}

class DoubleByteWidth : public testing::TestWithParam<WidthCase> {};

TEST_P(DoubleByteWidth, CountsCodePage932Bytes) {
  EXPECT_EQ(vb::TextWidth(GetParam().text), GetParam().width) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Characters, DoubleByteWidth,
    testing::Values(WidthCase{"A", 1}, WidthCase{"~", 1}, WidthCase{"ｱ", 1},  // half-width kana
                    WidthCase{"ﾟ", 1}, WidthCase{"漢", 2}, WidthCase{"あ", 2}, WidthCase{"ア", 2},
                    WidthCase{"～", 2},  // U+FF5E, the code page's own tilde
                    WidthCase{"Ａ", 2},  // full-width Latin
                    WidthCase{"😀", 1},   // no code in code page 932
                    WidthCase{"é", 1},   // no code in code page 932
                    WidthCase{"X3通り(Y1～Y5間)大梁部", 22}, WidthCase{"", 0}));

TEST(DoubleByte, SingleCharacters) {
  EXPECT_FALSE(vb::IsDoubleByte(U'a'));
  EXPECT_TRUE(vb::IsDoubleByte(U'梁'));
  EXPECT_FALSE(vb::IsDoubleByte(U'\U0001F600'));
}

TEST(Paths, InterfaceBackslashesBecomeNative) {
  EXPECT_EQ(seluvorne::NativePath("/data\\Zene1\\Kouji2\\3kai\\SELUVORN.mdb").string(),
            "/data/Zene1/Kouji2/3kai/SELUVORN.mdb");
  EXPECT_EQ(seluvorne::NativePath("\\SELUVORN.mdb").string(), "/SELUVORN.mdb");
  EXPECT_EQ(seluvorne::NativePath("/already/native").string(), "/already/native");
}

}  // namespace
