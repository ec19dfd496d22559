// Another process's lock held past the busy timeout. (Racing and killed
// writers are the stress and crash tools'.)

#include <SQLiteCpp/SQLiteCpp.h>

#include <chrono>

#include "db_fixture.h"

namespace seluvorne::testing {
namespace {

using namespace seluvorne::errc;

class ProcessTest : public DbTest {
 protected:
  void SetUp() override {
    DbTest::SetUp();
    auto db = Create("SELUVORN.mdb");
    AddFloorTable(*db, "KUTAIDATA");
    for (std::int16_t bangou = 0; bangou < 500; ++bangou)
      AddRow(*db, "KUTAIDATA", 0, 0, bangou, "page 0");
    db->Close();
  }
};

TEST_F(ProcessTest, ALockHeldPastTheBusyTimeoutRaises3218AndChangesNothing) {
  SQLite::Database holder(PathOf("SELUVORN.mdb"), SQLite::OPEN_READWRITE);
  holder.exec("BEGIN IMMEDIATE");
  dao::DBEngine::Instance()->SetBusyTimeout(200);
  auto db = Open("SELUVORN.mdb");
  auto start = std::chrono::steady_clock::now();
  EXPECT_RAISES(AddRow(*db, "KUTAIDATA", 5, 0, 0, "blocked"), kLocked);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(150));
  EXPECT_RAISES(db->Execute("DELETE * FROM KUTAIDATA ;", dao::dbFailOnError), kLocked);
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA;"), 500);  // reading is never blocked

  holder.exec("ROLLBACK");
  AddRow(*db, "KUTAIDATA", 5, 0, 0, "after");
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA;"), 501);
}

}  // namespace
}  // namespace seluvorne::testing
