#include <gtest/gtest.h>

#include "error_matchers.h"
#include "seluvorne/runtime.h"

namespace {

using seluvorne::errc::kInvalidCall;

TEST(Text, CountsCharactersNotBytes) {
  EXPECT_EQ(vb::Len("X1通り"), 4);
  EXPECT_EQ(vb::Len("a😀b"), 3);
  EXPECT_EQ(vb::Len("\xff\xfe"), 2);  // stray bytes count one each
  EXPECT_EQ(vb::Left("X1通り", 3), "X1通");
  EXPECT_EQ(vb::Right("ふかし左", 2), "し左");
  EXPECT_EQ(vb::Mid("あいうえお", 2, 2), "いう");
  EXPECT_EQ(vb::Mid("あいうえお", 4), "えお");
  EXPECT_RAISES(vb::Mid("a", 0), kInvalidCall);
  EXPECT_RAISES(vb::Left("a", -1), kInvalidCall);
  EXPECT_EQ(vb::InStr("X3通り(Y1～Y5間)", "～"), 8);
  EXPECT_EQ(vb::InStr(2, "abab", "ab"), 3);
  EXPECT_EQ(vb::InStr(2, "abc", ""), 2);
  EXPECT_EQ(vb::InStr(5, "abc", "a"), 0);
  EXPECT_RAISES(vb::InStr(0, "abc", "a"), kInvalidCall);
}

TEST(Text, DoubleByteWidthCountsCodePage932Bytes) {
  EXPECT_EQ(vb::TextWidth("A~"), 2);
  EXPECT_EQ(vb::TextWidth("ｱﾟ"), 2);  // half-width kana
  EXPECT_EQ(vb::TextWidth("漢あ～Ａ"), 8);
  EXPECT_EQ(vb::TextWidth("😀é"), 2);  // no code in code page 932
  EXPECT_EQ(vb::TextWidth("X3通り(Y1～Y5間)大梁部"), 22);
}

}  // namespace
