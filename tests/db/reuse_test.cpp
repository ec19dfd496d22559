// What the engine keeps between calls: the catalogue (reread only when a
// name is missing), rows read (shared while the file is unchanged), and a
// log that shrinks back.

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <chrono>
#include <functional>
#include <thread>

#include "catalogue.h"
#include "connection.h"
#include "db_fixture.h"
#include "seluvorne/files.h"

namespace seluvorne::testing {
namespace {

using namespace seluvorne::errc;
namespace fs = std::filesystem;

class ReuseTest : public PageTest {
 protected:
  // Counts the statements SQLite runs on the file's shared connection.
  int StatementsRunBy(const std::function<void()>& action) {
    auto connection = db::Connection::Open(PathOf("SELUVORN.mdb"), "SELUVORN.mdb");
    int statements = 0;
    sqlite3_trace_v2(
        connection->sqlite().getHandle(), SQLITE_TRACE_STMT,
        [](unsigned, void* count, void*, void*) {
          ++*static_cast<int*>(count);
          return 0;
        },
        &statements);
    action();
    sqlite3_trace_v2(connection->sqlite().getHandle(), 0, nullptr, nullptr);
    return statements;
  }
  // A table appended through a second connection, as another process would.
  void AppendElsewhere(const std::string& name) {
    SQLite::Database other(PathOf("SELUVORN.mdb"), SQLite::OPEN_READWRITE);
    db::TableDefinition table{name, "", {{"PAGE", dao::dbInteger, 2, "", false}}};
    db::Catalogue::AppendTable(other, table);
    SQLite::Statement stored(other, "SELECT StoredName FROM MSysTables WHERE Name = ?");
    stored.bind(1, name);
    stored.executeStep();
    other.exec("INSERT INTO " + db::QuoteIdentifier(stored.getColumn(0).getString()) +
               " (PAGE) VALUES (7)");
  }
};

TEST_F(ReuseTest, KnownNamesAndUnchangedReadsRunNoCatalogueQuery) {
  const std::string page3 = "SELECT * FROM KUTAIDATA WHERE PAGE = 3;";
  CountRows(*db, page3);  // read once: remembered
  const struct {
    const char* what;
    std::function<void()> action;
    int statements;
  } cases[] = {
      {"a table by name", [&] { db->TableDefs()->Item("KUTAIDATA"); }, 0},
      {"a table set", [&] { db->OpenRecordset("KUTAIDATA", dao::dbOpenTable); }, 0},
      {"a known statement again, file unchanged", [&] { EXPECT_EQ(CountRows(*db, page3), 5); },
       1},  // the data-version probe only
      {"a new statement", [&] { EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA;"), 6); }, 1},
      {"a missing name: one schema-version check",
       [&] { EXPECT_RAISES(db->TableDefs()->Item("NOSUCH"), kItemNotFound); }, 1},
      {"a listing checks the schema version", [&] { db->TableDefs()->Count(); }, 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(StatementsRunBy(c.action), c.statements);
  }
}

TEST_F(ReuseTest, TablesAnotherConnectionAddsAreFoundByName) {
  const struct {
    const char* name;
    std::function<std::int32_t()> reach;
  } cases[] = {
      {"BYNAME",
       [&] {
         auto rs = db->OpenRecordset("BYNAME", dao::dbOpenDynaset);
         rs->MoveLast();
         return rs->RecordCount();
       }},
      {"BYSTATEMENT", [&] { return CountRows(*db, "SELECT * FROM BYSTATEMENT;"); }},
      {"BYITEM", [&] { return db->TableDefs()->Item("BYITEM")->Name() == "BYITEM" ? 1 : 0; }},
      {"BYLISTING",
       [&] {
         auto tables = db->TableDefs();
         return tables->Item(tables->Count() - 1)->Name() == "BYLISTING" ? 1 : 0;
       }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    db->TableDefs()->Count();  // the catalogue is read before the other connection adds
    AppendElsewhere(c.name);
    EXPECT_EQ(c.reach(), 1);
  }
}

TEST_F(ReuseTest, ANameInOtherLettersAddedElsewhereIsPreferredWhenExact) {
  AddFloorTable(*db, "spantop");
  AppendElsewhere("SPANTOP");
  auto rs = db->OpenRecordset("SPANTOP", dao::dbOpenDynaset);
  rs->MoveLast();
  EXPECT_EQ(rs->RecordCount(), 1);  // the other connection's table, with its row
  EXPECT_EQ(db->TableDefs()->Item("spantop")->Fields()->Count(), 4);
}

TEST_F(ReuseTest, RememberedRowsGiveWayToEveryKindOfChange) {
  const std::string page3 = "SELECT * FROM KUTAIDATA WHERE PAGE = 3;";
  const struct {
    const char* what;
    std::function<void()> change;
    std::int32_t rows_after;
  } cases[] = {
      {"a row added through the same handle", [&] { AddRow(*db, "KUTAIDATA", 3, 9, 9, "new"); }, 6},
      {"a delete by Execute",
       [&] { db->Execute("DELETE * FROM KUTAIDATA WHERE PAGE = 3 AND BANGOU = 9;"); }, 5},
      {"a row added by another connection",
       [&] {
         SQLite::Database(PathOf("SELUVORN.mdb"), SQLite::OPEN_READWRITE)
             .exec("INSERT INTO KUTAIDATA (PAGE, SUBPAGE, BANGOU, DATA) VALUES (3, 8, 8, 'x')");
       },
       6},
      {"a row deleted through another handle",
       [&] { Open("SELUVORN.mdb")->Execute("DELETE * FROM KUTAIDATA WHERE BANGOU = 8;"); }, 5},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    auto before = db->OpenRecordset(page3, dao::dbOpenSnapshot);
    before->MoveLast();
    const std::int32_t rows_before = before->RecordCount();
    c.change();
    EXPECT_EQ(CountRows(*db, page3), c.rows_after);
    before->MoveFirst();
    EXPECT_EQ(before->GetRows(100).UBound(2) + 1, rows_before);  // a set read keeps its rows
  }
}

TEST_F(DbTest, TheLogShrinksBackAfterALargeStatement) {
  auto db = Create("SELUVORN.mdb");
  AddFloorTable(*db, "KUTAIDATA");
  AddRow(*db, "KUTAIDATA", 0, 0, 0, std::string(190, 'x'));
  for (int doubling = 0; doubling < 15; ++doubling)  // 32,768 rows of 190 characters
    db->Execute("INSERT INTO KUTAIDATA SELECT * FROM KUTAIDATA;");
  AddRow(*db, "KUTAIDATA", 1, 0, 0, "after");
  AddRow(*db, "KUTAIDATA", 1, 0, 0, "after");
  EXPECT_LE(fs::file_size(PathOf("SELUVORN.mdb-wal")), 4u << 20);
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA WHERE PAGE = 1;"), 2);
}

}  // namespace
}  // namespace seluvorne::testing
