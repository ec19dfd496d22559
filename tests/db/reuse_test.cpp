// What the engine keeps between calls: the catalogue (reread only when a
// name is missing), rows read (shared while the file is unchanged), idle
// connections (reused only for the same, unchanged file), and a log that
// shrinks back.

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

// A database file replaced at its path while its connection is idle: the
// next open reads the new file, and closing the idle connection leaves the
// new file's log alone.
TEST_F(DbTest, AnIdleConnectionIsNeverUsedForAReplacedFile) {
  const std::string target = PathOf("SELUVORN.mdb");
  auto make = [&](const std::string& file, int rows) {
    auto made = Create(file);
    AddFloorTable(*made, "KUTAIDATA");
    for (int i = 0; i < rows; ++i)
      AddRow(*made, "KUTAIDATA", 0, 0, 0, "row");
    return made;
  };
  const struct {
    const char* how;
    std::function<void()> replace;
  } cases[] = {
      {"DeleteFile, then CreateDatabase",
       [&] {
         files::DeleteFile(target);
         make("SELUVORN.mdb", 2)->Close();
       }},
      {"removed by another program, then created",
       [&] {
         fs::remove(target);
         make("SELUVORN.mdb", 2)->Close();
       }},
      {"CopyFile over it",
       [&] {
         make("other.mdb", 2)->Close();
         files::CopyFile(PathOf("other.mdb"), target);
       }},
      {"renamed over by another program",
       [&] {
         make("other.mdb", 2)->Close();
         fs::rename(PathOf("other.mdb"), target);
       }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.how);
    fs::remove_all(folder_);
    fs::create_directory(folder_);
    make("SELUVORN.mdb", 5)->Close();  // idle now
    EXPECT_FALSE(db::Connection::IsOpen(target));
    c.replace();
    auto reopened = Open("SELUVORN.mdb");
    AddRow(*reopened, "KUTAIDATA", 1, 0, 0, "in the log");
    EXPECT_EQ(CountRows(*reopened, "SELECT * FROM KUTAIDATA;"), 3);
    db::Connection::CloseIdle(target);  // what the idle timer does
    SQLite::Database reader(target, SQLite::OPEN_READONLY);
    EXPECT_EQ(reader.execAndGet("SELECT COUNT(*) FROM KUTAIDATA").getInt(), 3);
  }
}

TEST_F(DbTest, AnIdleConnectionClosesAfterItsLingerAndLeavesNoLog) {
  auto db = Create("SELUVORN.mdb");
  AddFloorTable(*db, "KUTAIDATA");
  AddRow(*db, "KUTAIDATA", 0, 0, 0, "row");
  db->Close();
  EXPECT_FALSE(db::Connection::IsOpen(PathOf("SELUVORN.mdb")));
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (fs::exists(PathOf("SELUVORN.mdb-wal")) && std::chrono::steady_clock::now() < deadline)
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_FALSE(fs::exists(PathOf("SELUVORN.mdb-wal")));
  EXPECT_EQ(CountRows(*Open("SELUVORN.mdb"), "SELECT * FROM KUTAIDATA;"), 1);
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
