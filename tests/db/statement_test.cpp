// The statements the stores send, and the ones the engine refuses.

#include <SQLiteCpp/SQLiteCpp.h>

#include "db_fixture.h"
#include "dialect.h"

namespace seluvorne::testing {
namespace {

using namespace seluvorne::errc;
using vb::Variant;

class StatementTest : public DbTest {
 protected:
  void SetUp() override {
    DbTest::SetUp();
    db = Create("HARIFUKA.mdb");
    auto table = db->CreateTableDef("KUTAIDATA");
    for (const char* name : {"PAGE", "SPANNO", "ITI", "SYURUI", "BANGOU"}) {
      auto field = table->CreateField(name, dao::dbInteger);
      field->SetDefaultValue("-1");
      table->Fields()->Append(field);
    }
    auto data = table->CreateField("DATA", dao::dbText, 200);
    data->SetAllowZeroLength(true);
    table->Fields()->Append(data);
    db->TableDefs()->Append(table);
    // Page 3, spans 0 to 4, one symbol row each.
    for (std::int16_t span = 0; span < 5; ++span)
      Add(3, span, 6, "F" + vb::StrTrimmed(span));
    Add(4, 0, 6, " ");
  }

  void Add(std::int16_t page, std::int16_t span, std::int16_t bangou, std::string data) {
    auto rs = db->OpenRecordset("KUTAIDATA", dao::dbOpenDynaset);
    rs->AddNew();
    rs->SetValue("PAGE", page);
    rs->SetValue("SPANNO", span);
    rs->SetValue("ITI", std::int16_t{2});
    rs->SetValue("SYURUI", std::int16_t{0});
    rs->SetValue("BANGOU", bangou);
    rs->SetValue("DATA", std::move(data));
    rs->Update();
    rs->Close();
  }

  std::vector<std::int16_t> Spans(const std::string& sql) {
    std::vector<std::int16_t> spans;
    for (auto rs = db->OpenRecordset(sql, dao::dbOpenSnapshot); !rs->IsEOF(); rs->MoveNext())
      spans.push_back(vb::CInt(rs->Value("SPANNO")));
    return spans;
  }

  std::shared_ptr<dao::Database> db;
};

TEST_F(StatementTest, TheStoresStatementsDoWhatTheySay) {
  using Spans_ = std::vector<std::int16_t>;
  EXPECT_EQ(Spans("SELECT * FROM KUTAIDATA WHERE PAGE BETWEEN 3 AND 3 AND SPANNO BETWEEN 1 AND "
                  "2;"),
            (Spans_{1, 2}));
  db->Execute("DELETE * FROM KUTAIDATA WHERE PAGE BETWEEN 3 AND 3 AND SPANNO BETWEEN 2 AND 2;",
              dao::dbFailOnError);
  db->Execute("UPDATE KUTAIDATA SET SPANNO = SPANNO - 1 Where PAGE = 3 AND SPANNO > 2;",
              dao::dbFailOnError);
  EXPECT_EQ(Spans("SELECT * FROM KUTAIDATA Where PAGE = 3 ORDER BY SPANNO ASC;"),
            (Spans_{0, 1, 2, 3}));
  db->Execute("UPDATE KUTAIDATA SET SPANNO = SPANNO + 1 Where PAGE = 3 AND SPANNO >= 2;");
  EXPECT_EQ(Spans("SELECT * FROM KUTAIDATA WHERE PAGE = 3;"), (Spans_{0, 1, 3, 4}));

  auto symbols = db->OpenRecordset("SELECT DATA FROM KUTAIDATA WHERE PAGE = 4 AND BANGOU = 6;",
                                   dao::dbOpenSnapshot);
  EXPECT_EQ(symbols->Fields()->Count(), 1);
  EXPECT_EQ(symbols->Value("DATA"), Variant(" "));

  db->Execute("DELETE * FROM KUTAIDATA WHERE PAGE = 3 ;", dao::dbFailOnError);
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA;"), 1);
}

struct Refusal {
  const char* sql;
  int error;
};

class RefusedStatementTest : public StatementTest, public ::testing::WithParamInterface<Refusal> {};

TEST_P(RefusedStatementTest, RaisesAndChangesNothing) {
  try {
    db->Execute(GetParam().sql, dao::dbFailOnError);
    ADD_FAILURE() << "accepted " << GetParam().sql;
  } catch (const Error& error) {
    EXPECT_EQ(error.number, GetParam().error) << error.description;
  }
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA;"), 6);
  EXPECT_EQ(db->TableDefs()->Count(), 4);
}

INSTANTIATE_TEST_SUITE_P(
    Statements, RefusedStatementTest,
    ::testing::Values(Refusal{"DELETE FORM KUTAIDATA;", kSyntaxError},
                      Refusal{"DELETE FORM MSysProperties;", kSyntaxError},
                      Refusal{"DELETE * FROM KUTAIDATA WHERE NOPE = 1 ;", kSyntaxError},
                      Refusal{"", kSyntaxError}, Refusal{"DELETE * FROM NOTABLE ;", kTableNotFound},
                      Refusal{"DELETE * FROM KUTAIDATA; DROP TABLE KUTAIDATA;",
                              kTextAfterStatement},
                      Refusal{"SELECT * FROM KUTAIDATA;", kCannotExecuteSelect}));

TEST_F(StatementTest, SyntaxErrorsCarrySqlitesMessage) {
  try {
    db->Execute("DELETE FORM KUTAIDATA;", dao::dbFailOnError);
  } catch (const Error& error) {
    EXPECT_EQ(error.description.rfind("Syntax error in FROM clause.", 0), 0u);
    EXPECT_NE(error.description.find("FORM"), std::string::npos) << error.description;
  }
}

TEST_F(StatementTest, RecordSetsOpenOnTablesOrSelectsOnly) {
  EXPECT_RAISES(db->OpenRecordset("NOTABLE", dao::dbOpenDynaset), kTableNotFound);
  EXPECT_RAISES(db->OpenRecordset("SELECT * FROM NOTABLE;", dao::dbOpenDynaset), kTableNotFound);
  EXPECT_RAISES(db->OpenRecordset("DELETE * FROM KUTAIDATA ;", dao::dbOpenDynaset),
                kInvalidOperation);
  EXPECT_RAISES(db->OpenRecordset("SELECT * FROM KUTAIDATA;", dao::dbOpenTable), kInvalidOperation);
  EXPECT_RAISES(db->OpenRecordset("KUTAIDATA", std::int16_t{8}), kInvalidArgument);
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA;"), 6);
}

// The translation itself: what SQLite is given.
TEST(DialectTest, DeleteStarGoesAndTablesResolveThroughTheCatalogue) {
  std::string file = (std::filesystem::temp_directory_path() / "seluvorne-dialect.mdb").string();
  std::filesystem::remove(file);
  auto database = dao::DBEngine::Instance()->CreateDatabase(file, std::string(dao::dbLangJapanese));
  for (const char* name : {"spantop", "SPANTOP"}) {
    auto table = database->CreateTableDef(name);
    table->Fields()->Append(table->CreateField("PAGE", dao::dbInteger));
    database->TableDefs()->Append(table);
  }
  database->Close();
  SQLite::Database sqlite(file, SQLite::OPEN_READONLY);
  db::Catalogue catalogue = db::Catalogue::Load(sqlite, file);
  auto translate = [&](const char* sql) { return db::TranslateStatement(sql, catalogue).text; };

  EXPECT_EQ(translate("DELETE * FROM SPANTOP WHERE PAGE = 3 ;"),
            "DELETE  FROM \"SPANTOP~2\" WHERE PAGE = ? ;");
  EXPECT_EQ(translate("select * from [spantop] where x = '*1'"),
            "select * from \"spantop\" where x = '*1'");
  EXPECT_EQ(translate("UPDATE SpanTop SET PAGE = PAGE - 1;;"),
            "UPDATE \"spantop\" SET PAGE = PAGE - ?;;");
  // Numbers become parameters, except the column positions of ORDER BY.
  db::Translation numbered = db::TranslateStatement(
      "SELECT * FROM SPANTOP WHERE PAGE BETWEEN 2.5 AND 1e3 AND X1 = -7 ORDER BY 1 LIMIT 4;",
      catalogue);
  EXPECT_EQ(numbered.text,
            "SELECT * FROM \"SPANTOP~2\" WHERE PAGE BETWEEN ? AND ? AND X1 = -? ORDER BY 1 LIMIT "
            "?;");
  EXPECT_EQ(numbered.numbers, (std::vector<std::string>{"2.5", "1e3", "7", "4"}));
  EXPECT_EQ(db::TranslateStatement("SELECT * FROM SPANTOP;", catalogue).table->name, "SPANTOP");
  EXPECT_EQ(db::TranslateStatement("SELECT * FROM SPANTOP JOIN spantop;", catalogue).table,
            nullptr);
  EXPECT_RAISES(translate("SELECT * FROM [NO TABLE]"), kTableNotFound);
  std::filesystem::remove(file);
}

}  // namespace
}  // namespace seluvorne::testing
