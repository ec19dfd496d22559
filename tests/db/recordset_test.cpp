// Record sets: adding rows, the rules fields apply to them, the values read
// back, and statements that follow a change of the schema.

#include <SQLiteCpp/SQLiteCpp.h>

#include "db_fixture.h"

namespace seluvorne::testing {
namespace {

using namespace seluvorne::errc;
using vb::Variant;

using RecordsetTest = PageTest;

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

// Each case adds one row to a table of its own; a refused row stays pending
// and can be put right.
TEST_F(RecordsetTest, UpdateAppliesTheFieldsRule) {
  const struct {
    const char* field;
    Variant value;
    int error;  // 0: stored as `stored`
    Variant stored;
  } rules[] = {{"N", Variant(std::int32_t{32767}), 0, Variant(std::int16_t{32767})},
               {"N", Variant(2.5), 0, Variant(std::int16_t{2})},
               {"N", Variant(-32768.5), 0, Variant(std::int16_t{-32768})},
               {"N", Variant(true), 0, Variant(std::int16_t{-1})},
               {"N", Variant(std::int32_t{32768}), kNumericOverflow, {}},
               {"N", Variant(32767.5), kNumericOverflow, {}},
               {"N", Variant("12a"), kConversionError, {}},
               {"SHORT", Variant("通り名"), 0, Variant("通り名")},
               {"SHORT", Variant(std::int16_t{123}), 0, Variant("123")},
               {"SHORT", Variant("abcd"), kFieldTooSmall, {}},
               {"SHORT", Variant(""), kZeroLengthNotAllowed, {}}};
  int n = 0;
  for (const auto& rule : rules) {
    const std::string name = "RULES" + std::to_string(n++);
    SCOPED_TRACE(name);
    auto table = db->CreateTableDef(name);
    table->Fields()->Append(table->CreateField("N", dao::dbInteger));
    table->Fields()->Append(table->CreateField("SHORT", dao::dbText, 3));  // no zero length
    db->TableDefs()->Append(table);
    auto rs = db->OpenRecordset(name, dao::dbOpenDynaset);
    rs->AddNew();
    rs->SetValue(rule.field, rule.value);
    if (rule.error != 0) {
      EXPECT_RAISES(rs->Update(), rule.error);
      EXPECT_EQ(CountRows(*db, "SELECT * FROM " + name + ";"), 0);
      rs->SetValue(rule.field, vb::Null);
      rs->Update();
      EXPECT_EQ(CountRows(*db, "SELECT * FROM " + name + ";"), 1);
    } else {
      rs->Update();
      EXPECT_EQ(db->OpenRecordset(name, dao::dbOpenSnapshot)->Value(rule.field), rule.stored);
    }
  }
}

// Each kind of stored value reads back as it was stored, texts on both sides
// of the length kept beside the number in a row's memory.
TEST_F(RecordsetTest, ValuesReadBackAsStored) {
  const std::string long_text(300, 'x');
  auto rs = db->OpenRecordset(
      "SELECT NULL AS A, 32767 AS B, -32769 AS C, 2147483648 AS D, 1.5 AS E, '' AS F, "
      "'12345678' AS G, '123456789' AS H, '" +
          long_text + "' AS I FROM KUTAIDATA WHERE PAGE = 3;",
      dao::dbOpenSnapshot);
  const std::vector<Variant> expected = {Variant(vb::Null),
                                         Variant(std::int16_t{32767}),
                                         Variant(std::int32_t{-32769}),
                                         Variant(2147483648.0),
                                         Variant(1.5),
                                         Variant(""),
                                         Variant("12345678"),
                                         Variant("123456789"),
                                         Variant(long_text)};
  int row = 0;
  for (; !rs->IsEOF(); ++row, rs->MoveNext())
    for (std::size_t column = 0; column < expected.size(); ++column)
      EXPECT_EQ(rs->Fields()->Item(static_cast<std::int32_t>(column))->Value(), expected[column])
          << "row " << row << ", column " << column;
  EXPECT_EQ(row, 5);
}

// A statement cached before another program changed the table is prepared
// again, with the columns the table has now.
TEST_F(RecordsetTest, CachedStatementsFollowASchemaChange) {
  auto table = db->CreateTableDef("T");
  table->Fields()->Append(table->CreateField("PAGE", dao::dbInteger));
  table->Fields()->Append(table->CreateField("A", dao::dbInteger));
  table->Fields()->Append(table->CreateField("B", dao::dbText, 5));
  db->TableDefs()->Append(table);
  db->Execute("INSERT INTO T (PAGE, A, B) VALUES (1, 2, 'b')", dao::dbFailOnError);
  EXPECT_EQ(db->OpenRecordset("SELECT * FROM T;", dao::dbOpenSnapshot)->Fields()->Count(), 3);

  SQLite::Database(PathOf("SELUVORN.mdb"), SQLite::OPEN_READWRITE)
      .exec("ALTER TABLE T DROP COLUMN A");
  auto rs = db->OpenRecordset("SELECT * FROM T;", dao::dbOpenSnapshot);
  ASSERT_EQ(rs->Fields()->Count(), 2);
  EXPECT_EQ(rs->Fields()->Item(1)->Name(), "B");
  EXPECT_EQ(rs->Value("B"), Variant("b"));
}

}  // namespace
}  // namespace seluvorne::testing
