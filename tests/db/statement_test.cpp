// The statements a caller may send, and the ones the engine refuses.

#include "db_fixture.h"

namespace seluvorne::testing {
namespace {

using namespace seluvorne::errc;
using Matcher = ::testing::Matcher<const std::string&>;

class StatementTest : public PageTest {
 protected:
  std::vector<std::int16_t> Spans(const std::string& sql) {
    std::vector<std::int16_t> spans;
    for (auto rs = db->OpenRecordset(sql, dao::dbOpenSnapshot); !rs->IsEOF(); rs->MoveNext())
      spans.push_back(vb::CInt(rs->Value("SUBPAGE")));
    return spans;
  }
};

struct Refusal {
  const char* sql;
  int error;
  bool record_set = false;  // given to OpenRecordset rather than Execute
};

std::ostream& operator<<(std::ostream& out, const Refusal& refusal) {
  return out << refusal.sql;
}

// Beside KUTAIDATA, a table whose text field refuses "".
class RefusedStatementTest : public StatementTest, public ::testing::WithParamInterface<Refusal> {
 protected:
  void SetUp() override {
    StatementTest::SetUp();
    auto table = db->CreateTableDef("TOORIMEI");
    table->Fields()->Append(table->CreateField("PAGE", dao::dbInteger));
    table->Fields()->Append(table->CreateField("TOORI", dao::dbText, 10));
    db->TableDefs()->Append(table);
  }
  std::vector<std::string> Rows() {
    std::vector<std::string> rows;
    for (const char* table : {"KUTAIDATA", "TOORIMEI", "MSysTables", "MSysFields"})
      for (auto rs = db->OpenRecordset(table, dao::dbOpenSnapshot); !rs->IsEOF(); rs->MoveNext()) {
        std::string row = table;
        for (std::int32_t i = 0; i < rs->Fields()->Count(); ++i)
          row += "|" + vb::CStr(rs->Fields()->Item(i)->Value());
        rows.push_back(row);
      }
    return rows;
  }
};

// Hostile statements raise their number, change nothing, and leave the
// connection as it was: the next write commits, durably, on its own.
TEST_P(RefusedStatementTest, RaisesAndChangesNothing) {
  const std::vector<std::string> before = Rows();
  const Refusal& refusal = GetParam();
  const bool misspelt_from = std::string_view(refusal.sql).starts_with("DELETE FORM");
  EXPECT_RAISES_THAT(refusal.record_set ? (void)db->OpenRecordset(refusal.sql, dao::dbOpenDynaset)
                                        : db->Execute(refusal.sql, dao::dbFailOnError),
                     refusal.error,
                     misspelt_from ? Matcher(::testing::StartsWith("Syntax error in FROM clause."))
                                   : Matcher(::testing::_));
  EXPECT_EQ(Rows(), before);
  AddRow(*db, "KUTAIDATA", 9, 0, 0, "after");
  db->Close();
  db = Open("SELUVORN.mdb");
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA;"), 7);
  EXPECT_EQ(db->TableDefs()->Count(), 5);
}

const std::string kLongText = "'" + std::string(300, 'x') + "'";
const std::string kTooLongInsert =
    "INSERT INTO TOORIMEI (PAGE, TOORI) VALUES (1, " + kLongText + ")";
const std::string kTooLongUpdate = "UPDATE KUTAIDATA SET DATA = " + kLongText + " WHERE PAGE = 3";

INSTANTIATE_TEST_SUITE_P(
    Statements, RefusedStatementTest,
    ::testing::Values(
        Refusal{"DELETE FORM KUTAIDATA;", kSyntaxError},
        Refusal{"DELETE FORM MSysProperties;", kSyntaxError},
        Refusal{"DELETE * FROM KUTAIDATA WHERE NOPE = 1 ;", kSyntaxError},
        Refusal{"DELETE * FROM NOTABLE ;", kTableNotFound},
        Refusal{"DELETE * FROM KUTAIDATA; DROP TABLE KUTAIDATA;", kTextAfterStatement},
        Refusal{"SELECT * FROM KUTAIDATA;", kCannotExecuteSelect},
        // A misspelt name in double quotes is no text.
        Refusal{"DELETE * FROM KUTAIDATA WHERE \"PAEG\" <> 3;", kSyntaxError},
        Refusal{"SELECT * FROM KUTAIDATA WHERE \"PAEG\" <> 3;", kSyntaxError, true},
        // Transaction control, PRAGMAs, other files, maintenance.
        Refusal{"BEGIN", kInvalidSqlStatement}, Refusal{"BEGIN TRANSACTION;", kInvalidSqlStatement},
        Refusal{"COMMIT", kInvalidSqlStatement}, Refusal{"ROLLBACK", kInvalidSqlStatement},
        Refusal{"SAVEPOINT a", kInvalidSqlStatement}, Refusal{"RELEASE a", kInvalidSqlStatement},
        Refusal{"PRAGMA synchronous=OFF", kInvalidSqlStatement},
        Refusal{"PRAGMA schema_version", kInvalidSqlStatement},
        Refusal{"PRAGMA table_info(KUTAIDATA)", kInvalidSqlStatement, true},
        Refusal{"ATTACH 'other.mdb' AS other", kInvalidSqlStatement},
        Refusal{"DETACH other", kInvalidSqlStatement}, Refusal{"VACUUM", kInvalidSqlStatement},
        Refusal{"VACUUM main", kInvalidSqlStatement, true},
        Refusal{"REINDEX", kInvalidSqlStatement}, Refusal{"ANALYZE", kInvalidSqlStatement},
        Refusal{"SELECT * FROM KUTAIDATA; PRAGMA synchronous=OFF", kTextAfterStatement, true},
        // Tables change only through TableDefs; the catalogue not at all.
        Refusal{"CREATE TABLE EXTRA (A INTEGER)", kInvalidSqlStatement},
        Refusal{"DROP TABLE KUTAIDATA", kInvalidSqlStatement},
        Refusal{"ALTER TABLE KUTAIDATA ADD COLUMN X INTEGER", kInvalidSqlStatement},
        Refusal{"CREATE INDEX BYDATA ON KUTAIDATA (DATA)", kInvalidSqlStatement},
        Refusal{"CREATE VIEW V AS SELECT PAGE FROM KUTAIDATA", kInvalidSqlStatement},
        Refusal{"CREATE TEMP TABLE SCRATCH (A)", kInvalidSqlStatement},
        Refusal{"DROP TABLE MSysTables", kReadOnly}, Refusal{"DROP TABLE MSysFields", kReadOnly},
        Refusal{"ALTER TABLE MSysFields RENAME TO X", kReadOnly},
        Refusal{"DELETE FROM MSysTables", kReadOnly},
        Refusal{"UPDATE MSysProperties SET Value = 'x'", kReadOnly},
        Refusal{"REPLACE INTO MSysProperties (Name) VALUES ('x')", kReadOnly},
        Refusal{"WITH p AS (SELECT 1) DELETE FROM MSysFields", kReadOnly},
        Refusal{"DELETE FROM KUTAIDATA WHERE PAGE IN (SELECT 1 FROM sqlite_master)",
                kTableNotFound},
        // The field rules of Update hold for INSERT and UPDATE; a statement
        // that breaks them on one row changes no row.
        Refusal{"INSERT INTO TOORIMEI (PAGE, TOORI) VALUES (99999999999, 'a')", kNumericOverflow},
        Refusal{"INSERT INTO TOORIMEI (PAGE, TOORI) VALUES ('abc', 'z')", kConversionError},
        Refusal{kTooLongInsert.c_str(), kFieldTooSmall},
        Refusal{kTooLongUpdate.c_str(), kFieldTooSmall},
        Refusal{"INSERT INTO TOORIMEI (PAGE, TOORI) VALUES (1, '')", kZeroLengthNotAllowed},
        Refusal{"UPDATE KUTAIDATA SET PAGE = PAGE * 10000", kNumericOverflow},
        Refusal{"UPDATE KUTAIDATA SET SUBPAGE = 'x' WHERE PAGE = 4", kConversionError},
        Refusal{"INSERT INTO KUTAIDATA SELECT PAGE + 32764, SUBPAGE, BANGOU, DATA FROM KUTAIDATA",
                kNumericOverflow},
        Refusal{"DELETE FROM KUTAIDATA", kInvalidOperation, true}));

// What the clients send that is not the stores' own: WITH, numbers in texts,
// a table stored under another name, INSERT and UPDATE within the rules.
TEST_F(StatementTest, AcceptedStatementsOfClients) {
  const std::pair<const char*, std::int32_t> cases[] = {
      {"WITH p(n) AS (SELECT (4)), q AS (SELECT n FROM p) DELETE FROM KUTAIDATA WHERE PAGE IN "
       "(SELECT n FROM q)",
       5},
      {"INSERT INTO KUTAIDATA (PAGE, SUBPAGE, BANGOU, DATA) VALUES ('7', 0, 0, 12)", 6},
      {"UPDATE KUTAIDATA SET DATA = '' WHERE PAGE = 7", 6},
      {"INSERT INTO KUTAIDATA SELECT PAGE + 10, SUBPAGE, BANGOU, DATA FROM KUTAIDATA", 12},
      {"DELETE * FROM KUTAIDATA WHERE PAGE >= 10 ;", 6},
  };
  for (const auto& [sql, rows] : cases) {
    db->Execute(sql, dao::dbFailOnError);
    EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA;"), rows) << sql;
  }
  auto seven = db->OpenRecordset("SELECT * FROM KUTAIDATA WHERE PAGE = 7;", dao::dbOpenSnapshot);
  EXPECT_EQ(seven->Value("PAGE"), vb::Variant(std::int16_t{7}));
  EXPECT_EQ(seven->Value("DATA"), vb::Variant(std::string()));
}

}  // namespace
}  // namespace seluvorne::testing
