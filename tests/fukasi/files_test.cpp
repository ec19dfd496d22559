// Creating, opening, closing and deleting the build-out file, and what an
// instance does when it dies.

#include "fukasi_fixture.h"

namespace seluvorne::testing {
namespace {

TEST_F(FukasiTest, CreatesTheTableInTheJapaneseLocaleWithoutCallingTheServices) {
  const std::string file = FileIn(MakeFloorFolder(1, 1, 1));
  store->Create_HariFukasiMDB_FullPath(file);
  auto database = dao::DBEngine::Instance()->OpenDatabase(file);
  EXPECT_EQ(database->Locale(), ";LANGID=0x0411;CP=932;COUNTRY=0");
  auto fields = database->TableDefs()->Item("KUTAIDATA")->Fields();
  std::string described;
  for (int i = 0; i < fields->Count(); ++i)
    described += fields->Item(i)->Name() + ":" + std::to_string(fields->Item(i)->Type()) + " ";
  EXPECT_EQ(described, "PAGE:3 SPANNO:3 ITI:3 SYURUI:3 BANGOU:3 DATA:10 ");
  database->Close();
  EXPECT_THAT(fakes.Log(), IsEmpty());
}

TEST_F(FukasiTest, CreatingMakesTheFolderOnlyWhenTheProbeMissesItAndRaises3204OverAFile) {
  const std::string floor = FloorFolder(2, 3, 4);
  store->Create_HariFukasiMDB(floor);
  Add(FileIn(floor), {{0, 0, 2, 0, 6, "F1"}});
  EXPECT_RAISES(store->Create_HariFukasiMDB(floor), errc::kDatabaseExists);
  EXPECT_RAISES(store->Create_HariFukasiMDB_FullPath(FileIn(floor)), errc::kDatabaseExists);
  EXPECT_THAT(Rows(FileIn(floor)), ElementsAre(Row{0, 0, 2, 0, 6, "F1"}));
  EXPECT_THAT(fakes.Log(), ElementsAre(Probe(floor, ", 16&"),
                                       "FolderKit.clsFloorDirs#1 MakeMkDir(\"" + floor + "\")",
                                       Probe(floor, ", 16&")));
  EXPECT_RAISES(store->Create_HariFukasi_TBL(FileIn(FloorFolder(9, 9, 9))), errc::kInvalidPath);
}

TEST_F(FukasiTest, WriteDBOpenWithoutAFolderOpensTheCurrentFloorCreatingItsFile) {
  const std::string floor = FloorFolder(1, 1, 1), other = MakeFloorWith({}, 2);
  EXPECT_TRUE(store->WriteDB_Open(""));
  EXPECT_EQ(store->Path(), floor);
  EXPECT_THAT(fakes.Log(), ElementsAre("FolderKit.clsFloorDirs#1 get CurrFloor",
                                       Probe(FileIn(floor)), Probe(floor, ", 16&"),
                                       "FolderKit.clsFloorDirs#1 MakeMkDir(\"" + floor + "\")"));
  // Open: the file cannot be deleted until the store closes it, here by
  // opening another floor's existing file.
  EXPECT_RAISES(files::DeleteFile(FileIn(floor)), errc::kPermissionDenied);
  fakes.ClearLog();
  store->WriteDB_Open(other);
  EXPECT_THAT(fakes.Log(), ElementsAre(Probe(FileIn(other))));
  files::DeleteFile(FileIn(floor));
  store->CloseDB();
  EXPECT_RAISES(store->CloseDB(), errc::kObjectNotSet);  // nothing open
}

TEST_F(FukasiTest, AFloorFolderThatIsEmptyRaises52BeforeAnyCall) {
  fakes.Answer(frame::FloorDirs::kProgId, "CurrFloor", vb::Variant(""));
  EXPECT_RAISES(store->WriteDB_Open(""), errc::kBadFileName);
  EXPECT_RAISES(store->Kill_DB(""), errc::kBadFileName);
  EXPECT_THAT(fakes.Log(), ElementsAre("FolderKit.clsFloorDirs#1 get CurrFloor"));
}

TEST_F(FukasiTest, KillDBClosesTheDatabaseAndDeletesTheFileWhenTheProbeFindsIt) {
  const std::string floor = MakeFloorWith({});
  store->WriteDB_Open(floor);
  fakes.ClearLog();
  EXPECT_TRUE(store->Kill_DB(floor));
  EXPECT_FALSE(files::FileExists(FileIn(floor)));
  EXPECT_RAISES(store->CloseDB(), errc::kObjectNotSet);
  EXPECT_TRUE(store->Kill_DB(floor));  // nothing left to delete
  EXPECT_THAT(fakes.Log(), ElementsAre(Probe(FileIn(floor)), Probe(FileIn(floor))));
}

TEST_F(FukasiTest, AnInstanceThatDiesClosesItsDatabaseAndRenewsTheSharedServices) {
  const std::string floor = MakeFloorFolder(1, 1, 1);
  std::make_shared<clsHariFukasiDS>()->WriteDB_Open(floor);
  files::DeleteFile(FileIn(floor));  // no longer held open
  EXPECT_EQ(fakes.Created(frame::FloorDirs::kProgId), 2);
  frame::gFloorDirs.CurrFloor();
  EXPECT_EQ(fakes.Log().back(), "FolderKit.clsFloorDirs#2 get CurrFloor");
}

}  // namespace
}  // namespace seluvorne::testing
