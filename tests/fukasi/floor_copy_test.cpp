// The page buffer, a page read whole and written back under pPageNo, and the
// work file pages are read from while the live file is rewritten.

#include "fukasi_fixture.h"

namespace seluvorne::testing {
namespace {

class FloorCopyTest : public FixtureFloorTest {
 protected:
  bool Copy(std::int16_t from_kai, std::int16_t from_page, std::int16_t to_kai,
            std::int16_t to_page) {
    std::int16_t zene = 1, kouji = 1;
    return store->No_Copy1Page(zene, kouji, from_kai, from_page, zene, kouji, to_kai, to_page);
  }
};

TEST_F(FloorCopyTest, ReadDBKeepsOneSpareEntryAndWriteDBWritesUnderPPageNoSkippingEmptyValues) {
  store->WriteDB_Open(floor);
  store->pPageNo = 4;
  ASSERT_TRUE(store->ReadDB());
  ASSERT_EQ(store->wBuf().data.UBound(), 7);  // seven rows and the spare entry
  EXPECT_EQ(store->wBuf().keys[0](7), 0);     // PAGE
  store->pPageNo = 9;
  EXPECT_TRUE(store->WriteDB());
  EXPECT_EQ(Rows(file, " WHERE PAGE = 9"), PageAs(4, 9));

  store->pPageNo = 2;  // no rows: the buffer keeps page 4
  EXPECT_FALSE(store->ReadDB());
  store->pPageNo = 0;
  store->WriteDB();
  EXPECT_EQ(Rows(file, " WHERE PAGE = 0"), PageAs(4, 0));

  store->wBuf_Clear();  // one empty entry, which writes an empty page
  store->WriteDB();
  EXPECT_THAT(Rows(file, " WHERE PAGE = 0"), IsEmpty());
  store->pPageNo = 4;
  store->HariFukasi_Del_DBTBL();
  EXPECT_EQ(Rows(file), PageAs(4, 9));
}

TEST_F(FloorCopyTest, PagesAreReadFromTheWorkFileWhileTheLiveFileIsRewritten) {
  const std::string work = floor + "\\WorkHariFuka.mdb";
  store->Copy_Kaisitei_Ini(false);
  store->SetPage(4);
  ASSERT_TRUE(store->DeletePage());  // the live page goes; the work file keeps it
  Variant page;
  ASSERT_TRUE(store->GetRecordPage_KaiSitei(page));
  store->UpdatePage(page, 7);
  store->CopyRecordPage(page);
  EXPECT_EQ(Rows(file, " WHERE PAGE >= 4"), PageAs(4, 7, true));
  store->SetPage(2);
  Variant none;
  EXPECT_FALSE(store->GetRecordPage_KaiSitei(none));  // no rows

  store->Copy_Kaisitei_Ini(false);  // a second snapshot replaces the first
  EXPECT_EQ(Rows(work), Rows(file));
  store->Copy_Kaisitei_End();
  EXPECT_FALSE(files::FileExists(work));
  store->SetPage(7);
  EXPECT_FALSE(store->GetRecordPage_KaiSitei(none));
  store->Copy_Kaisitei_End();  // nothing left to delete

  store->Copy_Kaisitei_Ini(true);  // closes the database
  EXPECT_RAISES(store->CloseDB(), errc::kObjectNotSet);
  files::DeleteFile(file);  // without a live file there is no work file
  store->Copy_Kaisitei_Ini(false);
  EXPECT_FALSE(files::FileExists(work));
}

}  // namespace
}  // namespace seluvorne::testing
