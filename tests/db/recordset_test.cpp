// Record sets: reading forwards, the record count, adding rows and the rules
// fields apply to them.

#include "db_fixture.h"

namespace seluvorne::testing {
namespace {

using namespace seluvorne::errc;
using vb::Variant;

class RecordsetTest : public DbTest {
 protected:
  void SetUp() override {
    DbTest::SetUp();
    db = Create("SELUVORN.mdb");
    AddFloorTable(*db, "KUTAIDATA");
    for (std::int16_t bangou = 0; bangou < 3; ++bangou)
      AddRow(*db, "KUTAIDATA", 3, 0, bangou, "d" + vb::StrTrimmed(bangou));
    AddRow(*db, "KUTAIDATA", 4, 0, 0, "other page");
  }
  std::shared_ptr<dao::Database> db;
};

TEST_F(RecordsetTest, RecordCountCountsTheRowsVisitedUntilMoveLast) {
  auto rs = db->OpenRecordset("SELECT * FROM KUTAIDATA WHERE PAGE = 3;", dao::dbOpenDynaset);
  EXPECT_FALSE(rs->IsEOF());
  EXPECT_FALSE(rs->IsBOF());
  EXPECT_EQ(rs->RecordCount(), 1);
  rs->MoveNext();
  EXPECT_EQ(rs->RecordCount(), 2);
  rs->MoveFirst();
  EXPECT_EQ(rs->RecordCount(), 2);  // moving back forgets nothing
  rs->MoveLast();
  EXPECT_EQ(rs->RecordCount(), 3);
  EXPECT_EQ(rs->Value("BANGOU"), Variant(std::int16_t{2}));
  rs->MoveNext();
  EXPECT_TRUE(rs->IsEOF());
  EXPECT_RAISES(rs->Value("DATA"), kNoCurrentRecord);
  EXPECT_RAISES(rs->MoveNext(), kNoCurrentRecord);

  auto empty = db->OpenRecordset("SELECT * FROM KUTAIDATA WHERE PAGE = 9;", dao::dbOpenSnapshot);
  EXPECT_TRUE(empty->IsEOF() && empty->IsBOF());
  EXPECT_EQ(empty->RecordCount(), 0);
  EXPECT_RAISES(empty->MoveLast(), kNoCurrentRecord);
  EXPECT_RAISES(empty->MoveFirst(), kNoCurrentRecord);
  EXPECT_RAISES(empty->Fields()->Item("DATA")->Value(), kNoCurrentRecord);
}

TEST_F(RecordsetTest, FieldsReadByNameAndPositionInTableOrder) {
  AddRow(*db, "KUTAIDATA", 5, 0, 0, vb::Null);
  auto rs = db->OpenRecordset("SELECT * FROM KUTAIDATA ORDER BY PAGE ASC;", dao::dbOpenSnapshot);
  rs->MoveLast();
  auto fields = rs->Fields();
  ASSERT_EQ(fields->Count(), 4);
  EXPECT_EQ(fields->Item(0)->Name(), "PAGE");
  EXPECT_EQ(fields->Item(0)->Value(), Variant(std::int16_t{5}));
  EXPECT_TRUE(fields->Item(3)->Value().isNull());
  EXPECT_TRUE(fields->Item("data")->Value().isNull());
  EXPECT_EQ(fields->Item("DATA")->Size(), 200);
  EXPECT_EQ(fields->Item("PAGE")->Type(), dao::dbInteger);
  EXPECT_RAISES(fields->Item("NOPE"), kItemNotFound);
  EXPECT_RAISES(fields->Item(4), kItemNotFound);
  EXPECT_RAISES(fields->Item("DATA")->SetValue("x"), kUpdateWithoutAddNew);
}

TEST_F(RecordsetTest, AddedRowsTakeDefaultsAndNullForFieldsNotSet) {
  auto rs = db->OpenRecordset("KUTAIDATA", dao::dbOpenDynaset);
  rs->AddNew();
  EXPECT_EQ(rs->Value("SUBPAGE"), Variant(std::int16_t{-1}));  // the new row shows its defaults
  rs->SetValue("PAGE", std::int16_t{7});
  rs->Update();
  rs->AddNew();
  rs->SetValue("PAGE", "8");  // a number as text converts
  rs->SetValue("DATA", "");
  rs->Update();
  rs->Close();

  auto read =
      db->OpenRecordset("SELECT * FROM KUTAIDATA WHERE PAGE BETWEEN 7 AND 8;", dao::dbOpenSnapshot);
  EXPECT_EQ(read->Value("SUBPAGE"), Variant(std::int16_t{-1}));
  EXPECT_EQ(read->Value("BANGOU"), Variant(std::int16_t{-1}));
  EXPECT_TRUE(read->Value("DATA").isNull());
  read->MoveNext();
  EXPECT_EQ(read->Value("PAGE"), Variant(std::int16_t{8}));
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

  // The table's field answers the same verdict before any row is added.
  auto field = db->TableDefs()->Item("RULES")->Fields()->Item(rule.field);
  if (rule.error != 0)
    EXPECT_RAISES(field->StoredValue(rule.value), rule.error);
  else
    EXPECT_EQ(field->StoredValue(rule.value), rule.stored);

  auto rs = db->OpenRecordset("RULES", dao::dbOpenDynaset);
  rs->AddNew();
  rs->SetValue(rule.field, rule.value);
  EXPECT_RAISES(rs->Fields()->Item(rule.field)->StoredValue(rule.value), kInvalidOperation);
  if (rule.error != 0) {
    EXPECT_RAISES(rs->Update(), rule.error);
    EXPECT_EQ(CountRows(*db, "SELECT * FROM RULES;"), 0);
    rs->SetValue(rule.field, vb::Null);  // the row stays pending and can be put right
    rs->Update();
    EXPECT_EQ(CountRows(*db, "SELECT * FROM RULES;"), 1);
  } else {
    rs->Update();
    auto read = db->OpenRecordset("RULES", dao::dbOpenSnapshot);
    EXPECT_EQ(read->Value(rule.field), rule.stored);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rules, FieldRuleTest,
    ::testing::Values(RuleCase{"N", Variant(std::int32_t{32767}), 0, Variant(std::int16_t{32767})},
                      RuleCase{"N", Variant(std::int32_t{-32768}), 0,
                               Variant(std::int16_t{-32768})},
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

TEST_F(RecordsetTest, ATableOpenedByNameReadsNothingUntilNavigated) {
  auto rs = db->OpenRecordset("KUTAIDATA", dao::dbOpenDynaset);
  // Rows added before the first read are part of what it then reads.
  rs->AddNew();
  rs->SetValue("PAGE", std::int16_t{9});
  rs->Update();
  EXPECT_EQ(rs->Fields()->Count(), 4);
  rs->MoveLast();
  EXPECT_EQ(rs->RecordCount(), 5);
  EXPECT_EQ(rs->Value("PAGE"), Variant(std::int16_t{9}));
}

TEST_F(RecordsetTest, GetRowsGivesFieldByRowAndMovesOn) {
  auto rs = db->OpenRecordset("SELECT * FROM KUTAIDATA WHERE PAGE = 3;", dao::dbOpenSnapshot);
  vb::Array<Variant> rows = rs->GetRows(99999);
  ASSERT_EQ(rows.UBound(1), 3);  // four fields
  ASSERT_EQ(rows.UBound(2), 2);  // three rows
  EXPECT_EQ(rows(0, 2), Variant(std::int16_t{3}));
  EXPECT_EQ(rows(2, 1), Variant(std::int16_t{1}));
  EXPECT_EQ(rows(3, 0), Variant("d0"));
  EXPECT_TRUE(rs->IsEOF());
  EXPECT_EQ(rs->RecordCount(), 3);
  EXPECT_RAISES(rs->GetRows(1), kNoCurrentRecord);

  rs = db->OpenRecordset("SELECT * FROM KUTAIDATA WHERE PAGE = 3;", dao::dbOpenSnapshot);
  EXPECT_EQ(rs->GetRows().UBound(2), 0);  // one row when not told
  EXPECT_EQ(rs->Value("BANGOU"), Variant(std::int16_t{1}));
}

TEST_F(RecordsetTest, SnapshotsAndComputedColumnsCannotAddRows) {
  auto snapshot = db->OpenRecordset("KUTAIDATA", dao::dbOpenSnapshot);
  EXPECT_RAISES(snapshot->AddNew(), kReadOnly);
  EXPECT_RAISES(snapshot->Update(), kUpdateWithoutAddNew);
  auto counted =
      db->OpenRecordset("SELECT COUNT(*) AS N, MAX(DATA) FROM KUTAIDATA;", dao::dbOpenDynaset);
  EXPECT_EQ(counted->Value("N"), Variant(std::int16_t{4}));
  counted->AddNew();
  EXPECT_RAISES(counted->SetValue("N", std::int16_t{1}), kInvalidOperation);
  auto two_tables = db->OpenRecordset("SELECT * FROM KUTAIDATA, MSysTables;", dao::dbOpenDynaset);
  EXPECT_RAISES(two_tables->AddNew(), kReadOnly);
  EXPECT_RAISES(db->OpenRecordset("MSysFields", dao::dbOpenDynaset)->AddNew(), kReadOnly);
}

TEST_F(RecordsetTest, AClosedSetRaises3420) {
  auto rs = db->OpenRecordset("SELECT * FROM KUTAIDATA;", dao::dbOpenDynaset);
  auto field = rs->Fields()->Item("DATA");
  rs->Close();
  EXPECT_RAISES(rs->MoveNext(), kObjectInvalid);
  EXPECT_RAISES(field->Value(), kObjectInvalid);
  EXPECT_RAISES(rs->Close(), kObjectInvalid);
}

}  // namespace
}  // namespace seluvorne::testing
