// Deletes of the current key's range, a bad array, and span renumbering, on
// the build-out fixture's rows.

#include "fukasi_fixture.h"

namespace seluvorne::testing {
namespace {

using RangeTest = FixtureFloorTest;

TEST_F(RangeTest, DeletesRemoveTheirLevelsRangeOnly) {
  Key(0, 1, 2, 1);  // no such position: a wider delete would take span 1
  EXPECT_TRUE(store->DeleteIti());
  Key(0, 0, 2, 1);  // no such kind
  EXPECT_TRUE(store->DeleteSyurui());
  EXPECT_EQ(Rows(file), fixture);
  Key(4, 3, 0, 0);
  EXPECT_TRUE(store->DeleteSpan());
  EXPECT_THAT(Rows(file, " WHERE PAGE = 4"), SizeIs(4));  // span 0 stays
  EXPECT_TRUE(store->DeletePage());
  Key(0, 1, 0, 1);
  EXPECT_TRUE(store->DeleteSyurui());
  Key(0, 0, 2, 0);
  EXPECT_TRUE(store->DeleteIti());
  EXPECT_THAT(Rows(file), ElementsAre(Row{0, 2, 3, 9, 19, "200"}, Row{0, 2, 3, 9, 21, ""}));
}

TEST_F(RangeTest, ABadArrayAddsNoRowAtAll) {
  Key(0, 0, 0, 0);
  Variant page;
  ASSERT_TRUE(store->GetRecordPage(page));
  auto& rows = page.array<Variant>();
  rows(5, 26) = std::string(201, 'x');  // the last row's value is too long
  EXPECT_RAISES(store->CopyRecordPage(page), errc::kFieldTooSmall);
  rows(5, 26) = "";
  store->UpdatePage(page, 160);  // beyond the page limit
  EXPECT_RAISES(store->CopyRecordPage(page), errc::kInvalidCall);
  rows(0, 0) = "abc";
  EXPECT_RAISES(store->CopyRecordPage(page), errc::kConversionError);
  EXPECT_RAISES(store->CopyRecordPage(Variant(vb::Array<Variant>({4, 1}))), errc::kInvalidCall);
  EXPECT_RAISES(store->CopyRecordPage(Variant()), errc::kInvalidCall);
  EXPECT_RAISES(store->CopyRecordPage(Variant("rows")), errc::kTypeMismatch);
  EXPECT_EQ(Rows(file), fixture);
}

TEST_F(RangeTest, TumeruSpanClosesTheGapOfTheSpanItRemovesAndInsertSpanOpensOne) {
  std::vector<Row> rows{{6, 3, 0, 0, 0, "other page"}};
  for (std::int16_t span = 0; span <= 4; ++span)
    rows.push_back({5, span, 0, 0, 0, "s" + std::to_string(span)});
  Add(file, rows);
  Key(5, 2, 0, 0);
  EXPECT_TRUE(store->TumeruSpan());
  const std::string sorted = " WHERE PAGE >= 5 ORDER BY PAGE, SPANNO";
  EXPECT_THAT(Rows(file, sorted), ElementsAre(Row{5, 0, 0, 0, 0, "s0"}, Row{5, 1, 0, 0, 0, "s1"},
                                              Row{5, 2, 0, 0, 0, "s3"}, Row{5, 3, 0, 0, 0, "s4"},
                                              Row{6, 3, 0, 0, 0, "other page"}));
  EXPECT_TRUE(store->InsertSpan());
  EXPECT_THAT(Rows(file, sorted), ElementsAre(Row{5, 0, 0, 0, 0, "s0"}, Row{5, 1, 0, 0, 0, "s1"},
                                              Row{5, 3, 0, 0, 0, "s3"}, Row{5, 4, 0, 0, 0, "s4"},
                                              Row{6, 3, 0, 0, 0, "other page"}));
}

}  // namespace
}  // namespace seluvorne::testing
