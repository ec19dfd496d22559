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

// A file opened while a number of nested scopes live (or before they began),
// with some of them ended (innermost first) before the check.
TEST_F(DbTest, HeldFilesKeepAFileOpenUntilTheOutermostScopeEnds) {
  const struct {
    const char* name;
    int scopes, ended;
    bool opened_before, held;  // held: the file is still open at the check
  } cases[] = {{"no scope", 0, 0, false, false},          {"inside a scope", 1, 0, false, true},
               {"after the scope", 1, 1, false, false},   {"inner scope ended", 2, 1, false, true},
               {"both scopes ended", 2, 2, false, false}, {"opened before", 1, 0, true, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Create("SELUVORN.mdb")->Close();
    std::shared_ptr<dao::Database> db;
    if (c.opened_before) db = Open("SELUVORN.mdb");
    std::vector<std::unique_ptr<dao::HeldFiles>> scopes;
    for (int i = 0; i < c.scopes; ++i)
      scopes.push_back(std::make_unique<dao::HeldFiles>());
    if (!c.opened_before) db = Open("SELUVORN.mdb");
    AddFloorTable(*db, "KUTAIDATA");
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
      scopes.clear();
    }
    files::DeleteFile(PathOf("SELUVORN.mdb"));
    EXPECT_FALSE(files::FileExists(PathOf("SELUVORN.mdb")));
  }
}

}  // namespace
}  // namespace seluvorne::testing
