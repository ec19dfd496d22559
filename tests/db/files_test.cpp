// The file helper the stores share.

#include <fstream>

#include "db_fixture.h"
#include "seluvorne/files.h"

namespace seluvorne::testing {
namespace {

using namespace seluvorne::errc;

using FilesTest = DbTest;

TEST_F(FilesTest, ACopyOfAnOpenDatabaseHoldsEveryCommittedRow) {
  auto db = Create("HARIFUKA.mdb");
  AddFloorTable(*db, "KUTAIDATA");
  for (std::int16_t i = 0; i < 50; ++i)
    AddRow(*db, "KUTAIDATA", i, 0, 0, "row");
  // The rows are in the write-ahead log, not yet in the file itself.
  ASSERT_GT(std::filesystem::file_size(PathOf("HARIFUKA.mdb-wal")), 0u);

  std::ofstream(PathOf("WorkHariFuka.mdb")) << "an old work file";
  files::CopyFile(PathOf("HARIFUKA.mdb"), PathOf("WorkHariFuka.mdb"));
  auto copy = Open("WorkHariFuka.mdb");
  EXPECT_EQ(CountRows(*copy, "SELECT * FROM KUTAIDATA;"), 50);
  // Now open, the copy cannot be replaced; nor can the source by itself.
  EXPECT_RAISES(files::CopyFile(PathOf("HARIFUKA.mdb"), PathOf("WorkHariFuka.mdb")),
                kPermissionDenied);
  EXPECT_RAISES(files::CopyFile(PathOf("HARIFUKA.mdb"), folder_.string() + "\\HARIFUKA.mdb"),
                kPermissionDenied);
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA;"), 50);
}

}  // namespace
}  // namespace seluvorne::testing
