// Creating, opening, closing and deleting the build-out file, and what an
// instance does when it dies.

#include "fukasi_fixture.h"

namespace seluvorne::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(FukasiTest, CreatesTheTableWithItsFieldsDefaultsAndTheJapaneseLocale) {
  const std::string floor = MakeFloor();
  clsHariFukasiDS().Create_HariFukasiMDB_FullPath(FileIn(floor));
  auto database = Open(FileIn(floor));
  EXPECT_EQ(database->Locale(), ";LANGID=0x0411;CP=932;COUNTRY=0");
  auto tables = database->TableDefs();
  ASSERT_EQ(tables->Count(), 4);  // the three catalogue tables, then KUTAIDATA
  auto fields = tables->Item(3)->Fields();
  ASSERT_EQ(fields->Count(), 6);
  const char* names[] = {"PAGE", "SPANNO", "ITI", "SYURUI", "BANGOU", "DATA"};
  for (int i = 0; i < 6; ++i) {
    const auto& field = fields->Item(i);
    EXPECT_EQ(field->Name(), names[i]);
    EXPECT_EQ(field->Type(), i < 5 ? dao::dbInteger : dao::dbText);
    EXPECT_EQ(field->DefaultValue(), i < 5 ? "-1" : "");
  }
  EXPECT_EQ(fields->Item(5)->Size(), 200);
  EXPECT_TRUE(fields->Item(5)->AllowZeroLength());
  database->Close();
  EXPECT_THAT(fakes.Log(), IsEmpty());  // a full path needs neither service
}

TEST_F(FukasiTest, CreatingOverAFileRaises3204AndKeepsItsRows) {
  const std::string floor = MakeFloorWith({{0, 0, 2, 0, 6, "F1"}});
  clsHariFukasiDS store;
  EXPECT_RAISES(store.Create_HariFukasiMDB_FullPath(FileIn(floor)), errc::kDatabaseExists);
  EXPECT_RAISES(store.Create_HariFukasiMDB(floor), errc::kDatabaseExists);
  EXPECT_THAT(Rows(FileIn(floor)), ElementsAre(Row{0, 0, 2, 0, 6, "F1"}));
  EXPECT_RAISES(store.Create_HariFukasi_TBL(FloorOf(9, 9, 9) + "\\HARIFUKA.mdb"),
                errc::kInvalidPath);
}

TEST_F(FukasiTest, CreatingInAFloorMakesTheFolderOnlyWhenTheProbeMissesIt) {
  const std::string floor = FloorOf(2, 3, 4);
  clsHariFukasiDS store;
  store.Create_HariFukasiMDB(floor);
  EXPECT_TRUE(files::FileExists(FileIn(floor)));
  files::DeleteFile(FileIn(floor));
  store.Create_HariFukasiMDB(floor);
  EXPECT_THAT(fakes.Log(),
              ElementsAre("FolderKit.clsExistProbe#1 Find_FileExists(\"" + floor + "\", 16&)",
                          "FolderKit.clsFloorDirs#1 MakeMkDir(\"" + floor + "\")",
                          "FolderKit.clsExistProbe#1 Find_FileExists(\"" + floor + "\", 16&)"));
}

TEST_F(FukasiTest, WriteDBOpenWithoutAFolderOpensTheCurrentFloorCreatingItsFile) {
  const std::string floor = FloorOf(1, 1, 1);
  clsHariFukasiDS store;
  EXPECT_TRUE(store.WriteDB_Open(""));
  EXPECT_EQ(store.Path(), floor);
  EXPECT_THAT(fakes.Log(),
              ElementsAre("FolderKit.clsFloorDirs#1 get CurrFloor",
                          "FolderKit.clsExistProbe#1 Find_FileExists(\"" + FileIn(floor) + "\")",
                          "FolderKit.clsExistProbe#1 Find_FileExists(\"" + floor + "\", 16&)",
                          "FolderKit.clsFloorDirs#1 MakeMkDir(\"" + floor + "\")"));
  // Open: the file cannot be deleted until the store closes it.
  EXPECT_RAISES(files::DeleteFile(FileIn(floor)), errc::kPermissionDenied);
  store.CloseDB();
  files::DeleteFile(FileIn(floor));
}

TEST_F(FukasiTest, WriteDBOpenOfAnExistingFileOpensItAndClosesTheOneBefore) {
  const std::string first = MakeFloorWith({}, 1, 1, 1), second = MakeFloorWith({}, 1, 1, 2);
  clsHariFukasiDS store;
  store.WriteDB_Open(first);
  fakes.ClearLog();
  store.WriteDB_Open(second);
  EXPECT_EQ(store.Path(), second);
  EXPECT_THAT(fakes.Log(),
              ElementsAre("FolderKit.clsExistProbe#1 Find_FileExists(\"" + FileIn(second) + "\")"));
  files::DeleteFile(FileIn(first));  // closed
  EXPECT_RAISES(files::DeleteFile(FileIn(second)), errc::kPermissionDenied);
}

TEST_F(FukasiTest, AFloorFolderThatIsEmptyRaises52BeforeAnyCall) {
  fakes.Answer(frame::FloorDirs::kProgId, "CurrFloor", vb::Variant(""));
  clsHariFukasiDS store;
  EXPECT_RAISES(store.WriteDB_Open(""), errc::kBadFileName);
  EXPECT_RAISES(store.Create_HariFukasiMDB(""), errc::kBadFileName);
  EXPECT_RAISES(store.Kill_DB(""), errc::kBadFileName);
  EXPECT_THAT(fakes.Log(), ElementsAre("FolderKit.clsFloorDirs#1 get CurrFloor"));
}

TEST_F(FukasiTest, CloseDBWithoutAnOpenDatabaseRaises91) {
  clsHariFukasiDS store;
  EXPECT_RAISES(store.CloseDB(), errc::kObjectNotSet);
  store.WriteDB_Open(MakeFloor());
  store.CloseDB();
  EXPECT_RAISES(store.CloseDB(), errc::kObjectNotSet);
}

TEST_F(FukasiTest, KillDBClosesTheDatabaseAndDeletesTheFileWhenTheProbeFindsIt) {
  const std::string floor = MakeFloorWith({{0, 0, 0, 0, 0, "1"}});
  clsHariFukasiDS store;
  store.WriteDB_Open(floor);
  fakes.ClearLog();
  EXPECT_TRUE(store.Kill_DB(floor));
  EXPECT_FALSE(files::FileExists(FileIn(floor)));
  EXPECT_RAISES(store.CloseDB(), errc::kObjectNotSet);
  EXPECT_TRUE(store.Kill_DB(floor));  // nothing left to delete
  EXPECT_THAT(fakes.Log(),
              ElementsAre("FolderKit.clsExistProbe#1 Find_FileExists(\"" + FileIn(floor) + "\")",
                          "FolderKit.clsExistProbe#1 Find_FileExists(\"" + FileIn(floor) + "\")"));
}

TEST_F(FukasiTest, AnInstanceThatDiesClosesItsDatabaseAndRenewsTheSharedServices) {
  const std::string floor = MakeFloor();
  {
    clsHariFukasiDS store;
    store.WriteDB_Open(floor);
  }
  files::DeleteFile(FileIn(floor));  // no longer held open
  EXPECT_EQ(fakes.Created(frame::FloorDirs::kProgId), 2);
  EXPECT_EQ(fakes.Created(frame::ExistProbe::kProgId), 2);
  frame::gFloorDirs.CurrFloor();
  EXPECT_EQ(fakes.Log().back(), "FolderKit.clsFloorDirs#2 get CurrFloor");
}

}  // namespace
}  // namespace seluvorne::testing
