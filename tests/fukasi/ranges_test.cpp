// Range queries, deletes and copies of the current key, span renumbering and
// the page's validity, on the build-out fixture's rows.

#include <algorithm>
#include <functional>

#include "fukasi_fixture.h"

namespace seluvorne::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using vb::Variant;

// ---- Statement texts -------------------------------------------------------------

TEST(StatementText, TheRangeFilterAddsOneFieldPerLevel) {
  clsHariFukasiDS::Key key{3, 4, 1, 2, 0, 3, 9, 9, 21};
  const char* expected[] = {
      " * FROM KUTAIDATA;",
      " * FROM KUTAIDATA WHERE PAGE BETWEEN 3 AND 4;",
      " * FROM KUTAIDATA WHERE PAGE BETWEEN 3 AND 4 AND SPANNO BETWEEN 1 AND 2;",
      " * FROM KUTAIDATA WHERE PAGE BETWEEN 3 AND 4 AND SPANNO BETWEEN 1 AND 2 AND ITI BETWEEN 0 "
      "AND 3;",
      " * FROM KUTAIDATA WHERE PAGE BETWEEN 3 AND 4 AND SPANNO BETWEEN 1 AND 2 AND ITI BETWEEN 0 "
      "AND 3 AND SYURUI BETWEEN 9 AND 9;",
      " * FROM KUTAIDATA WHERE PAGE BETWEEN 3 AND 4 AND SPANNO BETWEEN 1 AND 2 AND ITI BETWEEN 0 "
      "AND 3 AND SYURUI BETWEEN 9 AND 9 AND BANGOU = 21;"};
  for (int level = 0; level <= 5; ++level)
    EXPECT_EQ(fukasi::RangeFilter(key, clsHariFukasiDS::Level(level)), expected[level]) << level;
  key.page_from = key.page_to = -2;  // numbers are trimmed: no blank before a digit
  EXPECT_EQ(fukasi::RangeFilter(key, clsHariFukasiDS::kPage),
            " * FROM KUTAIDATA WHERE PAGE BETWEEN -2 AND -2;");
}

TEST(StatementText, FixedStatementsAsTheClientsKnowThem) {
  // The symbol query keeps Str's blank before a number that is not negative.
  EXPECT_EQ(fukasi::SymbolQuery(3), "SELECT DATA FROM KUTAIDATA WHERE PAGE =  3 AND BANGOU = 6;");
  EXPECT_EQ(fukasi::SymbolQuery(-1), "SELECT DATA FROM KUTAIDATA WHERE PAGE = -1 AND BANGOU = 6;");
  EXPECT_EQ(fukasi::CloseSpanGap(4, 2),
            "UPDATE KUTAIDATA SET SPANNO = SPANNO - 1 Where PAGE = 4 AND SPANNO > 2;");
  EXPECT_EQ(fukasi::OpenSpanGap(4, 2),
            "UPDATE KUTAIDATA SET SPANNO = SPANNO + 1 Where PAGE = 4 AND SPANNO >= 2;");
  EXPECT_EQ(fukasi::PageQuery(12), "SELECT * FROM KUTAIDATA WHERE PAGE = 12;");
  EXPECT_EQ(fukasi::PageDelete(12), "DELETE * FROM KUTAIDATA WHERE PAGE = 12 ;");
}

// ---- On the fixture ----------------------------------------------------------------

class RangeTest : public FukasiTest {
 protected:
  void SetUp() override {
    FukasiTest::SetUp();
    fixture = FixtureRows();
    ASSERT_FALSE(fixture.empty()) << "the build-out fixture's manifest is not there";
    floor = MakeFloorWith(fixture);
    store = std::make_shared<clsHariFukasiDS>();
    store->SetPath(floor);
  }
  void Key(std::int16_t page, std::int16_t span, std::int16_t iti, std::int16_t syurui) {
    store->SetPage(page);
    store->SetSpan(span);
    store->SetIti(iti);
    store->SetSyurui(syurui);
  }
  // The fixture's rows that `keep` keeps, in stored order.
  std::vector<Row> FixtureWhere(const std::function<bool(const Row&)>& keep) const {
    std::vector<Row> rows;
    for (const Row& row : fixture)
      if (keep(row)) rows.push_back(row);
    return rows;
  }
  static std::int32_t Count(dao::Recordset& set) {
    set.MoveLast();
    return set.RecordCount();
  }

  std::vector<Row> fixture;
  std::string floor;
  std::shared_ptr<clsHariFukasiDS> store;
};

TEST_F(RangeTest, EachQueryNarrowsTheRangeByOneFieldOfTheKey) {
  Key(0, 1, 0, 1);
  std::shared_ptr<dao::Recordset> set;
  ASSERT_TRUE(store->GetRecordAll(set));
  EXPECT_EQ(set->Value("DATA"), Variant("0"));  // on the first row
  EXPECT_EQ(Count(*set), 34);
  ASSERT_TRUE(store->GetRecordSpan(set));
  EXPECT_EQ(Count(*set), 11);
  ASSERT_TRUE(store->GetRecordIti(set));
  EXPECT_EQ(Count(*set), 11);
  ASSERT_TRUE(store->GetRecordSyurui(set));
  EXPECT_EQ(set->Value("BANGOU"), Variant(std::int16_t{0}));
  EXPECT_EQ(Count(*set), 11);
  Key(0, 1, 0, 2);  // no such kind
  EXPECT_FALSE(store->GetRecordSyurui(set));
  EXPECT_TRUE(set->IsEOF());
  Key(0, 1, 2, 1);
  EXPECT_FALSE(store->GetRecordIti(set));
}

TEST_F(RangeTest, GetRecordPageGivesFieldByRowAndLeavesTheArrayWithoutRows) {
  Key(4, 0, 0, 0);
  Variant page;
  ASSERT_TRUE(store->GetRecordPage(page));
  const auto& rows = page.array<Variant>();
  ASSERT_EQ(rows.UBound(1), 5);
  ASSERT_EQ(rows.UBound(2), 6);
  EXPECT_EQ(rows(0, 0), Variant(std::int16_t{4}));
  EXPECT_EQ(rows(4, 2), Variant(std::int16_t{6}));
  EXPECT_EQ(rows(5, 2), Variant(" "));
  EXPECT_EQ(rows(5, 6), Variant(""));

  Variant untouched("caller's");
  Key(2, 0, 0, 0);
  EXPECT_FALSE(store->GetRecordPage(untouched));
  EXPECT_EQ(untouched, Variant("caller's"));
}

TEST_F(RangeTest, DeletesRemoveTheirLevelsRangeOnly) {
  Key(0, 1, 0, 1);
  EXPECT_TRUE(store->DeleteSyurui());
  EXPECT_THAT(Rows(FileIn(floor)), SizeIs(34 - 11));
  Key(0, 0, 2, 0);
  EXPECT_TRUE(store->DeleteIti());
  EXPECT_THAT(Rows(FileIn(floor)), SizeIs(34 - 11 - 14));
  Key(4, 3, 0, 0);
  EXPECT_TRUE(store->DeleteSpan());
  EXPECT_TRUE(store->DeletePage());  // page 4's span 0 too
  EXPECT_THAT(Rows(FileIn(floor)),
              ElementsAre(Row{0, 2, 3, 9, 19, "200"}, Row{0, 2, 3, 9, 21, ""}));
}

TEST_F(RangeTest, APageCopiesUnderAnotherNumberThroughItsArray) {
  Key(4, 0, 0, 0);
  Variant page;
  ASSERT_TRUE(store->GetRecordPage(page));
  store->UpdatePage(page, 7);
  EXPECT_TRUE(store->CopyRecordPage(page));
  std::vector<Row> expected = FixtureWhere([](const Row& row) { return row.page == 4; });
  for (Row& row : expected)
    row.page = 7;
  EXPECT_EQ(Rows(FileIn(floor), " WHERE PAGE = 7"), expected);
  EXPECT_THAT(Rows(FileIn(floor)), SizeIs(34 + 7));

  Variant text("no array");
  store->UpdatePage(text, 9);  // nothing to do
  EXPECT_EQ(text, Variant("no array"));
  Variant flat(vb::Array<Variant>({5}));
  EXPECT_RAISES(store->UpdatePage(flat, 9), errc::kSubscriptOutOfRange);
}

TEST_F(RangeTest, ABadArrayAddsNoRowAtAll) {
  frame::gPageMax = frame::kSmallPageMax;
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
  EXPECT_EQ(Rows(FileIn(floor)), fixture);
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
  EXPECT_EQ(Rows(FileIn(floor)), fixture);
}

// Spans 0 to 4 of page 5, one row each, and one row on page 6.
class SpanTest : public RangeTest {
 protected:
  void SetUp() override {
    RangeTest::SetUp();
    if (IsSkipped()) return;
    std::vector<Row> rows;
    for (std::int16_t span = 0; span <= 4; ++span)
      rows.push_back({5, span, 0, 0, 0, "s" + std::to_string(span)});
    rows.push_back({6, 3, 0, 0, 0, "other page"});
    Add(FileIn(floor), rows);
    Key(5, 2, 0, 0);
  }
  std::vector<std::pair<int, std::string>> Spans(int page) {
    std::vector<std::pair<int, std::string>> spans;
    for (const Row& row : Rows(FileIn(floor), " WHERE PAGE = " + std::to_string(page)))
      spans.emplace_back(row.span, row.data);
    std::sort(spans.begin(), spans.end());
    return spans;
  }
};

TEST_F(SpanTest, TumeruSpanRemovesTheSpanAndClosesTheGap) {
  EXPECT_TRUE(store->TumeruSpan());
  EXPECT_THAT(Spans(5), ElementsAre(std::pair{0, "s0"}, std::pair{1, "s1"}, std::pair{2, "s3"},
                                    std::pair{3, "s4"}));
  EXPECT_THAT(Spans(6), ElementsAre(std::pair{3, "other page"}));
}

TEST_F(SpanTest, InsertSpanOpensAGapAndDeletesNothing) {
  EXPECT_TRUE(store->InsertSpan());
  EXPECT_THAT(Spans(5), ElementsAre(std::pair{0, "s0"}, std::pair{1, "s1"}, std::pair{3, "s2"},
                                    std::pair{4, "s3"}, std::pair{5, "s4"}));
  EXPECT_THAT(Spans(6), ElementsAre(std::pair{3, "other page"}));
}

TEST_F(RangeTest, APageIsValidOnlyWithASymbolThatIsNotBlank) {
  store->SetPage(0);
  EXPECT_TRUE(store->isYuukou());
  store->SetPage(4);  // symbols " " and "" only
  EXPECT_FALSE(store->isYuukou());
  store->SetPage(1);  // no rows
  EXPECT_FALSE(store->isYuukou());
  Add(FileIn(floor), {{4, 3, 2, 5, 6, "　"}});  // an ideographic space is no blank
  store->SetPage(4);
  EXPECT_TRUE(store->isYuukou());
}

}  // namespace
}  // namespace seluvorne::testing
