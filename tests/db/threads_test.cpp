// Several threads of one process on one file, each with its own handles:
// the library lock keeps the shared connection and its caches whole.

#include <thread>
#include <vector>

#include "db_fixture.h"

namespace seluvorne::testing {
namespace {

class ThreadsTest : public DbTest {
 protected:
  static constexpr int kThreads = 8;
  static constexpr int kRounds = 20;

  void SetUp() override {
    DbTest::SetUp();
    auto db = Create("SELUVORN.mdb");
    AddFloorTable(*db, "TOORIMEI");
    db->Close();
  }
};

// One round as a C++ host writes it, through the objects' methods.
void DirectRound(const std::string& path, std::int16_t page) {
  auto db = dao::DBEngine::Instance()->OpenDatabase(path);
  auto rs = db->OpenRecordset("TOORIMEI", dao::dbOpenDynaset);
  rs->AddNew();
  rs->SetValue("PAGE", page);
  rs->SetValue("DATA", "通り " + std::to_string(page));
  rs->Update();
  rs->Close();
  db->Close();
}

// The same round as a script writes it, every step a call by name.
void LateBoundRound(const std::string& path, std::int16_t page) {
  Object engine = dao::DBEngine::Instance();
  std::vector<vb::Variant> args{vb::Variant(path)};
  Object db = vb::CObj(Invoke(engine, "OpenDatabase", CallKind::Method, args));
  args = {vb::Variant(std::string("TOORIMEI")), vb::Variant(dao::dbOpenDynaset)};
  Object rs = vb::CObj(Invoke(db, "OpenRecordset", CallKind::Method, args));
  Invoke(rs, "AddNew", CallKind::Method, {});
  for (auto [name, value] : {std::pair{"PAGE", vb::Variant(page)},
                             std::pair{"DATA", vb::Variant(std::string("by name"))}}) {
    std::vector<vb::Variant> field_name{vb::Variant(std::string(name))};
    Object field = vb::CObj(Invoke(rs, "Fields", CallKind::PropertyGet, field_name));
    std::vector<vb::Variant> put{value};
    Invoke(field, "Value", CallKind::PropertyPut, put);
  }
  Invoke(rs, "Update", CallKind::Method, {});
  Invoke(rs, "Close", CallKind::Method, {});
  Invoke(db, "Close", CallKind::Method, {});
}

TEST_F(ThreadsTest, EveryRowOfEveryThreadIsStoredAndTheFileStaysWhole) {
  const std::string path = PathOf("SELUVORN.mdb");
  std::vector<std::thread> threads;
  std::atomic<int> failures{0};
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back([&, t] {
      for (int round = 0; round < kRounds; ++round) {
        try {
          if (t % 2 == 0)
            DirectRound(path, static_cast<std::int16_t>(t));
          else
            LateBoundRound(path, static_cast<std::int16_t>(t));
        } catch (...) {
          ++failures;
        }
      }
    });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(failures.load(), 0);
  EXPECT_EQ(AskSqlite("SELUVORN.mdb", "SELECT COUNT(*) FROM TOORIMEI"),
            std::to_string(kThreads * kRounds));
  EXPECT_EQ(AskSqlite("SELUVORN.mdb", "PRAGMA integrity_check"), "ok");
}

}  // namespace
}  // namespace seluvorne::testing
