// The file helper the stores share.

#include <fstream>

#include "db_fixture.h"
#include "seluvorne/files.h"

namespace seluvorne::testing {
namespace {

using namespace seluvorne::errc;

using FilesTest = DbTest;

TEST_F(FilesTest, ADatabaseFileHeldOpenCannotBeDeleted) {
  auto db = Create("HARIFUKA.mdb");
  AddFloorTable(*db, "KUTAIDATA");
  std::string path = folder_.string() + "\\HARIFUKA.mdb";
  EXPECT_TRUE(files::FileExists(path));
  EXPECT_RAISES(files::DeleteFile(path), kPermissionDenied);
  auto rs = db->OpenRecordset("KUTAIDATA", dao::dbOpenDynaset);
  db.reset();  // a record set still holds the database
  EXPECT_RAISES(files::DeleteFile(path), kPermissionDenied);
  rs.reset();
  files::DeleteFile(path);
  EXPECT_FALSE(files::FileExists(path));
  for (const char* suffix : {"-wal", "-shm"})
    EXPECT_FALSE(std::filesystem::exists(PathOf("HARIFUKA.mdb") + suffix));

  EXPECT_RAISES(files::DeleteFile(path), kFileNotFound);
  EXPECT_RAISES(files::DeleteFile(folder_.string() + "\\nofolder\\HARIFUKA.mdb"), kPathNotFound);
  EXPECT_TRUE(files::FolderExists(folder_.string()));
  EXPECT_FALSE(files::FileExists(folder_.string()));
}

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
  EXPECT_EQ(copy->Locale(), dao::dbLangJapanese);

  EXPECT_RAISES(files::CopyFile(PathOf("HARIFUKA.mdb"), PathOf("WorkHariFuka.mdb")),
                kPermissionDenied);
  EXPECT_RAISES(files::CopyFile(PathOf("missing.mdb"), PathOf("x.mdb")), kFileNotFound);
  EXPECT_RAISES(files::CopyFile(PathOf("HARIFUKA.mdb"), folder_.string() + "\\HARIFUKA.mdb"),
                kPermissionDenied);
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA;"), 50);
  EXPECT_RAISES(files::CopyFile(PathOf("HARIFUKA.mdb"), PathOf("no/x.mdb")), kPathNotFound);

  std::ofstream(PathOf("Hollenbar.Dat")) << "plain";
  files::CopyFile(PathOf("Hollenbar.Dat"), PathOf("copy.Dat"));
  std::string copied;
  std::getline(std::ifstream(PathOf("copy.Dat")), copied);
  EXPECT_EQ(copied, "plain");
}

}  // namespace
}  // namespace seluvorne::testing
