// What the engine keeps between calls: the catalogue (reread only when a
// name is missing) and rows read (shared while the file is unchanged).

#include <SQLiteCpp/SQLiteCpp.h>

#include <chrono>
#include <thread>

#include "catalogue.h"
#include "connection.h"
#include "db_fixture.h"
#include "seluvorne/files.h"

namespace seluvorne::testing {
namespace {

using namespace seluvorne::errc;

class ReuseTest : public PageTest {
 protected:
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

}  // namespace
}  // namespace seluvorne::testing
