// Range queries, deletes and copies of the current key, span renumbering and
// the page's validity, on the build-out fixture's rows.

#include "fukasi_fixture.h"

namespace seluvorne::testing {
namespace {

using RangeTest = FixtureFloorTest;

// The rows of a set, which leaves it on the last.
std::int32_t Count(dao::Recordset& set) {
  set.MoveLast();
  return set.RecordCount();
}

TEST_F(RangeTest, EachQueryNarrowsTheRangeByOneFieldOfTheKey) {
  Key(0, 1, 0, 1);
  std::shared_ptr<dao::Recordset> set;
  ASSERT_TRUE(store->GetRecordAll(set));
  EXPECT_EQ(Count(*set), 34);
  ASSERT_TRUE(store->GetRecordSpan(set));
  EXPECT_EQ(Count(*set), 11);
  ASSERT_TRUE(store->GetRecordIti(set));
  EXPECT_EQ(Count(*set), 11);
  ASSERT_TRUE(store->GetRecordSyurui(set));
  EXPECT_EQ(Count(*set), 11);
  Key(0, 1, 0, 2);  // no such kind
  EXPECT_FALSE(store->GetRecordSyurui(set));
  EXPECT_TRUE(set->IsEOF());
  Key(0, 1, 2, 1);  // no such position
  EXPECT_FALSE(store->GetRecordIti(set));
}

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

TEST_F(RangeTest, APageCopiesUnderAnotherNumberThroughItsArrayOfFieldByRow) {
  Variant page, untouched("caller's");
  Key(2, 0, 0, 0);
  EXPECT_FALSE(store->GetRecordPage(untouched));  // no rows
  EXPECT_EQ(untouched, Variant("caller's"));
  store->SetPage(4);
  ASSERT_TRUE(store->GetRecordPage(page));
  ASSERT_EQ(page.array<Variant>().UBound(2), 6);
  EXPECT_EQ(page.array<Variant>()(4, 2), Variant(std::int16_t{6}));
  store->UpdatePage(page, 7);
  EXPECT_TRUE(store->CopyRecordPage(page));
  EXPECT_EQ(Rows(file, " WHERE PAGE = 7"), PageAs(4, 7, true));
  EXPECT_THAT(Rows(file), SizeIs(34 + 7));

  Variant text("no array");
  store->UpdatePage(text, 9);  // nothing to do
  EXPECT_EQ(text, Variant("no array"));
  Variant flat(vb::Array<Variant>({5}));
  EXPECT_RAISES(store->UpdatePage(flat, 9), errc::kSubscriptOutOfRange);
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

TEST_F(RangeTest, TheCopiesThatCopyNothingCloseTheCallersSetAndNeedOne) {
  Key(0, 0, 2, 0);
  for (auto copy : {&clsHariFukasiDS::CopyRecordSpan, &clsHariFukasiDS::CopyRecordIti,
                    &clsHariFukasiDS::CopyRecordSyurui}) {
    std::shared_ptr<dao::Recordset> set;
    ASSERT_TRUE(store->GetRecordSpan(set));
    EXPECT_TRUE(((*store).*copy)(set));
    EXPECT_RAISES(set->MoveNext(), errc::kObjectInvalid);
    std::shared_ptr<dao::Recordset> nothing;
    EXPECT_RAISES(((*store).*copy)(nothing), errc::kObjectNotSet);
  }
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

TEST_F(RangeTest, APageIsValidOnlyWithASymbolThatIsNotBlank) {
  store->SetPage(0);
  EXPECT_TRUE(store->isYuukou());
  store->SetPage(4);  // symbols " " and "" only
  EXPECT_FALSE(store->isYuukou());
  Add(file, {{4, 3, 2, 5, 6, "　"}});  // an ideographic space is no blank
  store->SetPage(4);
  EXPECT_TRUE(store->isYuukou());
}

}  // namespace
}  // namespace seluvorne::testing
