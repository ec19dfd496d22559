// Build-out pages copied between floors: one page straight across, and the
// work file pages are read from while the live file is rewritten.

#include "fukasi_fixture.h"

namespace seluvorne::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FloorCopyTest : public FukasiTest {
 protected:
  void SetUp() override {
    FukasiTest::SetUp();
    frame::gPageMax = frame::kSmallPageMax;
    source = MakeFloorWith({{2, 0, 2, 0, 6, "F1"}, {2, 1, 0, 1, 21, ""}, {3, 0, 0, 0, 0, "p3"}}, 1,
                           1, 1);
  }
  bool Copy(std::int16_t from_kai, std::int16_t from_page, std::int16_t to_kai,
            std::int16_t to_page) {
    std::int16_t zene = 1, kouji = 1;
    return store.No_Copy1Page(zene, kouji, from_kai, from_page, zene, kouji, to_kai, to_page);
  }
  std::string Probe(const std::string& path) const {
    return "FolderKit.clsExistProbe#1 Find_FileExists(\"" + path + "\")";
  }
  std::string source;
  clsHariFukasiDS store;
};

TEST_F(FloorCopyTest, OnePageReplacesTheDestinationPageAndTheCallsAreThese) {
  const std::string destination =
      MakeFloorWith({{5, 0, 0, 0, 0, "replaced"}, {6, 0, 0, 0, 0, "kept"}}, 1, 1, 2);
  EXPECT_TRUE(Copy(1, 2, 2, 5));
  EXPECT_THAT(Rows(FileIn(destination)),
              ElementsAre(Row{6, 0, 0, 0, 0, "kept"}, Row{5, 0, 2, 0, 6, "F1"}));
  EXPECT_THAT(fakes.Log(), ElementsAre("FolderKit.clsFloorDirs#1 GetFullPathToKai(1%, 1%, 1%)",
                                       "FolderKit.clsFloorDirs#1 GetFullPathToKai(1%, 1%, 2%)",
                                       Probe(FileIn(source)), Probe(FileIn(destination))));
  EXPECT_RAISES(store.CloseDB(), errc::kObjectNotSet);  // both files closed again
}

TEST_F(FloorCopyTest, ASourcePageWithoutRowsLeavesTheDestinationAlone) {
  const std::string destination = MakeFloorWith({{5, 0, 0, 0, 0, "kept"}}, 1, 1, 2);
  EXPECT_FALSE(Copy(1, 4, 2, 5));
  EXPECT_THAT(Rows(FileIn(destination)), ElementsAre(Row{5, 0, 0, 0, 0, "kept"}));
  EXPECT_THAT(fakes.Log(), ElementsAre("FolderKit.clsFloorDirs#1 GetFullPathToKai(1%, 1%, 1%)",
                                       "FolderKit.clsFloorDirs#1 GetFullPathToKai(1%, 1%, 2%)",
                                       Probe(FileIn(source))));
}

TEST_F(FloorCopyTest, AFloorWithoutAFileGetsOneAndAMissingFolderRaises) {
  const std::string destination = MakeFloor(1, 1, 3);
  EXPECT_TRUE(Copy(1, 3, 3, 0));
  EXPECT_THAT(Rows(FileIn(destination)), ElementsAre(Row{0, 0, 0, 0, 0, "p3"}));
  EXPECT_RAISES(Copy(1, 3, 9, 0), errc::kInvalidPath);  // no folder 9kai
  EXPECT_FALSE(files::FolderExists(FloorOf(1, 1, 9)));
}

TEST_F(FloorCopyTest, ADestinationPageBeyondTheLimitRaisesBeforeAnyCall) {
  EXPECT_RAISES(Copy(1, 2, 1, 160), errc::kInvalidCall);
  EXPECT_THAT(fakes.Log(), IsEmpty());
}

TEST_F(FloorCopyTest, CopyOpenDBNeedsAFileName) {
  EXPECT_RAISES(store.Copy_OpenDB(), errc::kBadFileName);
}

// ---- The work file ---------------------------------------------------------------

class WorkFileTest : public FloorCopyTest {
 protected:
  void SetUp() override {
    FloorCopyTest::SetUp();
    store.SetPath(source);
    work = source + "\\WorkHariFuka.mdb";
  }
  std::string work;
};

TEST_F(WorkFileTest, PagesAreReadFromTheSnapshotWhileTheLiveFileIsRewritten) {
  store.Copy_Kaisitei_Ini(false);
  ASSERT_TRUE(files::FileExists(work));
  store.SetPage(2);
  ASSERT_TRUE(store.DeletePage());  // the live page goes; the snapshot keeps it

  vb::Variant page;
  ASSERT_TRUE(store.GetRecordPage_KaiSitei(page));
  store.UpdatePage(page, 7);
  store.CopyRecordPage(page);
  EXPECT_THAT(Rows(FileIn(source)), ElementsAre(Row{3, 0, 0, 0, 0, "p3"}, Row{7, 0, 2, 0, 6, "F1"},
                                                Row{7, 1, 0, 1, 21, ""}));
  store.SetPage(4);
  vb::Variant untouched(std::int16_t{1});
  EXPECT_FALSE(store.GetRecordPage_KaiSitei(untouched));
  EXPECT_EQ(untouched, vb::Variant(std::int16_t{1}));

  store.Copy_Kaisitei_End();
  EXPECT_FALSE(files::FileExists(work));
  store.SetPage(7);
  EXPECT_FALSE(store.GetRecordPage_KaiSitei(untouched));
  store.Copy_Kaisitei_End();  // nothing left to delete
}

TEST_F(WorkFileTest, ASecondSnapshotReplacesTheFirst) {
  store.Copy_Kaisitei_Ini(false);
  Add(FileIn(source), {{9, 0, 0, 0, 0, "later"}});
  fakes.ClearLog();
  store.Copy_Kaisitei_Ini(false);
  EXPECT_THAT(fakes.Log(), ElementsAre(Probe(FileIn(source)), Probe(work)));
  EXPECT_EQ(Rows(work), Rows(FileIn(source)));
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(NativePath(source)))
    names.push_back(entry.path().filename().string());
  EXPECT_THAT(names, ::testing::UnorderedElementsAre("HARIFUKA.mdb", "WorkHariFuka.mdb"));
}

TEST_F(WorkFileTest, WithoutALiveFileThereIsNoSnapshotAndTrueClosesTheDatabase) {
  files::DeleteFile(FileIn(source));
  store.Copy_Kaisitei_Ini(false);
  EXPECT_FALSE(files::FileExists(work));
  vb::Variant page;
  EXPECT_FALSE(store.GetRecordPage_KaiSitei(page));

  store.WriteDB_Open(source);
  store.Copy_Kaisitei_Ini(true);
  EXPECT_RAISES(store.CloseDB(), errc::kObjectNotSet);
  store.Copy_Kaisitei_Ini(true);  // nothing open: nothing to do
}

}  // namespace
}  // namespace seluvorne::testing
