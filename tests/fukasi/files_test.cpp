// Creating the build-out file and deleting it.

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

}  // namespace
}  // namespace seluvorne::testing
