// Files held open across the pages of a long member: a file opened while a
// HeldFiles lives stays open after its last handle closes, until the
// outermost scope ends, and what each handle wrote is committed at once.

#include <SQLiteCpp/SQLiteCpp.h>

#include <memory>
#include <vector>

#include "db_fixture.h"
#include "seluvorne/files.h"
#include "seluvorne/held_files.h"

namespace seluvorne::testing {
namespace {

using namespace seluvorne::errc;

struct HoldCase {
  const char* name;
  int scopes;          // nested scopes begun
  int ended;           // of them, ended (innermost first) before the check
  bool opened_before;  // the handle was opened before the scopes began
  bool held;           // the file is still open at the check
};

std::ostream& operator<<(std::ostream& out, const HoldCase& c) {
  return out << c.name;
}

class HeldFilesTest : public DbTest, public ::testing::WithParamInterface<HoldCase> {};

TEST_P(HeldFilesTest, KeepsAFileOpenUntilTheOutermostScopeEnds) {
  const HoldCase& c = GetParam();
  {
    auto db = Create("SELUVORN.mdb");
    AddFloorTable(*db, "KUTAIDATA");
    db->Close();
  }
  std::shared_ptr<dao::Database> db;
  if (c.opened_before) db = Open("SELUVORN.mdb");
  std::vector<std::unique_ptr<dao::HeldFiles>> scopes;
  for (int i = 0; i < c.scopes; ++i)
    scopes.push_back(std::make_unique<dao::HeldFiles>());
  if (!c.opened_before) db = Open("SELUVORN.mdb");
  AddRow(*db, "KUTAIDATA", 3, 0, 81, std::string("1"));
  db->Close();
  for (int i = 0; i < c.ended; ++i)
    scopes.pop_back();

  // Another connection, as another process, sees the row whether or not the
  // file is still held.
  SQLite::Database other(PathOf("SELUVORN.mdb"), SQLite::OPEN_READONLY);
  EXPECT_EQ(other.execAndGet("SELECT COUNT(*) FROM KUTAIDATA WHERE PAGE = 3").getInt(), 1);
  if (c.held) {
    EXPECT_RAISES(files::DeleteFile(PathOf("SELUVORN.mdb")), kPermissionDenied);
  } else {
    files::DeleteFile(PathOf("SELUVORN.mdb"));
    EXPECT_FALSE(files::FileExists(PathOf("SELUVORN.mdb")));
  }
}

INSTANTIATE_TEST_SUITE_P(Scopes, HeldFilesTest,
                         ::testing::Values(HoldCase{"NoScope", 0, 0, false, false},
                                           HoldCase{"InsideAScope", 1, 0, false, true},
                                           HoldCase{"AfterTheScope", 1, 1, false, false},
                                           HoldCase{"InnerScopeEnded", 2, 1, false, true},
                                           HoldCase{"BothScopesEnded", 2, 2, false, false},
                                           HoldCase{"OpenedBeforeTheScope", 1, 0, true, false}),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace seluvorne::testing
