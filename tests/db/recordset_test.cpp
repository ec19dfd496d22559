// Record sets: reading forwards, the record count, adding rows and the rules
// fields apply to them.

#include "db_fixture.h"

namespace seluvorne::testing {
namespace {

using namespace seluvorne::errc;
using vb::Variant;

using RecordsetTest = PageTest;

TEST_F(RecordsetTest, RecordCountCountsTheRowsVisitedUntilMoveLast) {
  auto rs = db->OpenRecordset("SELECT * FROM KUTAIDATA WHERE PAGE = 3;", dao::dbOpenDynaset);
  EXPECT_EQ(rs->RecordCount(), 1);
  rs->MoveNext();
  EXPECT_EQ(rs->RecordCount(), 2);
  rs->MoveFirst();
  EXPECT_EQ(rs->RecordCount(), 2);  // moving back forgets nothing
  rs->MoveLast();
  EXPECT_EQ(rs->RecordCount(), 5);
  rs->MoveNext();
  EXPECT_TRUE(rs->IsEOF());
  EXPECT_RAISES(rs->Value("DATA"), kNoCurrentRecord);
  EXPECT_RAISES(rs->MoveNext(), kNoCurrentRecord);

  auto empty = db->OpenRecordset("SELECT * FROM KUTAIDATA WHERE PAGE = 9;", dao::dbOpenSnapshot);
  EXPECT_TRUE(empty->IsEOF() && empty->IsBOF());
  EXPECT_EQ(empty->RecordCount(), 0);
  EXPECT_RAISES(empty->MoveLast(), kNoCurrentRecord);
}

TEST_F(RecordsetTest, AddedRowsTakeDefaultsAndNullForFieldsNotSet) {
  // A table opened by name reads nothing until navigated: rows added first are read.
  auto rs = db->OpenRecordset("KUTAIDATA", dao::dbOpenDynaset);
  EXPECT_RAISES(rs->Fields()->Item("DATA")->SetValue("x"), kUpdateWithoutAddNew);
  rs->AddNew();
  EXPECT_EQ(rs->Value("SUBPAGE"), Variant(std::int16_t{-1}));  // the new row shows its defaults
  rs->SetValue("PAGE", "7");                                   // a number as text converts
  rs->Update();
  rs->AddNew();
  rs->SetValue("PAGE", std::int16_t{8});
  rs->SetValue("DATA", "");
  rs->Update();
  rs->MoveLast();
  EXPECT_EQ(rs->RecordCount(), 8);

  auto read =
      db->OpenRecordset("SELECT * FROM KUTAIDATA WHERE PAGE BETWEEN 7 AND 8;", dao::dbOpenSnapshot);
  EXPECT_EQ(read->Value("PAGE"), Variant(std::int16_t{7}));
  EXPECT_EQ(read->Value("BANGOU"), Variant(std::int16_t{-1}));
  EXPECT_TRUE(read->Value("DATA").isNull());
  read->MoveNext();
  EXPECT_EQ(read->Value("DATA"), Variant(""));
}

struct RuleCase {
  const char* field;
  Variant value;
  int error;  // 0: stored as `stored`
  Variant stored;
};

class FieldRuleTest : public RecordsetTest, public ::testing::WithParamInterface<RuleCase> {};

TEST_P(FieldRuleTest, UpdateAppliesTheFieldsRule) {
  const RuleCase& rule = GetParam();
  auto table = db->CreateTableDef("RULES");
  table->Fields()->Append(table->CreateField("N", dao::dbInteger));
  table->Fields()->Append(table->CreateField("SHORT", dao::dbText, 3));  // no zero length
  db->TableDefs()->Append(table);

  auto rs = db->OpenRecordset("RULES", dao::dbOpenDynaset);
  rs->AddNew();
  rs->SetValue(rule.field, rule.value);
  if (rule.error != 0) {
    EXPECT_RAISES(rs->Update(), rule.error);
    EXPECT_EQ(CountRows(*db, "SELECT * FROM RULES;"), 0);
    rs->SetValue(rule.field, vb::Null);  // the row stays pending and can be put right
    rs->Update();
    EXPECT_EQ(CountRows(*db, "SELECT * FROM RULES;"), 1);
  } else {
    rs->Update();
    EXPECT_EQ(db->OpenRecordset("RULES", dao::dbOpenSnapshot)->Value(rule.field), rule.stored);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rules, FieldRuleTest,
    ::testing::Values(RuleCase{"N", Variant(std::int32_t{32767}), 0, Variant(std::int16_t{32767})},
                      RuleCase{"N", Variant(2.5), 0, Variant(std::int16_t{2})},
                      RuleCase{"N", Variant(-32768.5), 0, Variant(std::int16_t{-32768})},
                      RuleCase{"N", Variant(true), 0, Variant(std::int16_t{-1})},
                      RuleCase{"N", Variant(std::int32_t{32768}), kNumericOverflow, {}},
                      RuleCase{"N", Variant(32767.5), kNumericOverflow, {}},
                      RuleCase{"N", Variant("12a"), kConversionError, {}},
                      RuleCase{"SHORT", Variant("通り名"), 0, Variant("通り名")},
                      RuleCase{"SHORT", Variant(std::int16_t{123}), 0, Variant("123")},
                      RuleCase{"SHORT", Variant("abcd"), kFieldTooSmall, {}},
                      RuleCase{"SHORT", Variant(""), kZeroLengthNotAllowed, {}}));

TEST_F(RecordsetTest, GetRowsGivesFieldByRowAndMovesOn) {
  auto rs = db->OpenRecordset("SELECT * FROM KUTAIDATA WHERE PAGE = 3;", dao::dbOpenSnapshot);
  EXPECT_EQ(rs->GetRows().UBound(2), 0);  // one row when not told
  vb::Array<Variant> rows = rs->GetRows(99999);
  ASSERT_EQ(rows.UBound(1), 3);  // four fields
  ASSERT_EQ(rows.UBound(2), 3);  // the four rows left
  EXPECT_EQ(rows(0, 1), Variant(std::int16_t{3}));
  EXPECT_EQ(rows(2, 1), Variant(std::int16_t{2}));
  EXPECT_EQ(rows(3, 0), Variant("d1"));
  EXPECT_TRUE(rs->IsEOF());
  EXPECT_EQ(rs->RecordCount(), 5);
  EXPECT_RAISES(rs->GetRows(1), kNoCurrentRecord);
}

}  // namespace
}  // namespace seluvorne::testing
