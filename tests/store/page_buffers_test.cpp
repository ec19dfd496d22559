// The page buffers: a page read whole and written as another page, with the
// spare slot, the tables whose rows are never deleted, the dropped empty
// texts and the cleared buffer.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "error_matchers.h"
#include "page_test.h"
#include "seluvorne/floor_schema.h"
#include "seluvorne/sample_pages.h"

namespace {

using namespace seluvorne;
using seluvorne::testing::kPageTables;
using seluvorne::testing::PageTest;
using seluvorne::testing::RowsOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Texts = vb::Array<std::string>;

class PageBufferTest : public PageTest {
 protected:
  void SetUp() override {
    PageTest::SetUp();
    service->KutaiDb = service->WriteOpenDb;  // the buffers work on KutaiDb
  }
  void Copy(std::int16_t from, std::int16_t to) {
    service->pPageNo = from;
    EXPECT_TRUE(service->ReadDB());
    service->pPageNo = to;
    EXPECT_FALSE(service->WriteDB());
  }
};

TEST_F(PageBufferTest, APageWrittenTwiceHasOneCopyButSpanTopAndSpanTanJoilTwice) {
  sample::PageTexts texts = sample::TypicalPage(2);
  sample::WritePage(*service, 2, texts);
  Copy(2, 5);
  for (const std::string& table : kPageTables)
    EXPECT_EQ(Rows(table, 5), Rows(table, 2)) << table;
  EXPECT_EQ(Rows("TOORIMEI", 5), Rows("TOORIMEI", 2));

  service->pPageNo = 5;
  service->WriteDB();  // the same buffer again
  for (const std::string& table : kPageTables) {
    const bool kept = table == "SPANTOP" || table == "SPANTANJOIL";
    EXPECT_EQ(Rows(table, 5).size(), Rows(table, 2).size() * (kept ? 2 : 1)) << table;
  }
  EXPECT_EQ(Rows("TOORIMEI", 5).size(), 1u);
}

TEST_F(PageBufferTest, ReadDBLeavesASpareSlotAndTheSourcePage) {
  Texts hanti({79, 4});
  hanti(0, 0) = "a";
  service->Write_Hanti(2, hanti);
  service->Write_TooriMei(2, "X1", "2");
  service->pPageNo = 2;
  service->ReadDB();
  const auto& buffer = service->wBuf();
  EXPECT_EQ(buffer.toori_page, 2);
  const frame::PageRows& rows = buffer.tables[1];  // HANTI
  ASSERT_EQ(rows.data.UBound(), 400);
  EXPECT_EQ(rows.keys[0](0), 2);  // the page read, until WriteDB replaces it
  EXPECT_EQ(rows.keys[0](400), 0);
  EXPECT_EQ(rows.data(400), "");
  // A table without rows keeps its cleared element: -1, or 0 in STPJOUGEGENSUN.
  EXPECT_EQ(buffer.tables[0].keys[0].UBound(), 0);
  EXPECT_EQ(buffer.tables[0].keys[0](0), -1);
  EXPECT_EQ(buffer.tables[7].keys[0](0), 0);
}

TEST_F(PageBufferTest, EmptyTextsAreDroppedExceptInKutaiData) {
  Texts hanti({79, 4}), kutai({159, 0});
  hanti(3, 0) = "h";
  kutai(3, 0) = "k";
  service->Write_Hanti(2, hanti);
  service->Write_KutaiData(2, kutai);
  service->Write_TooriMei(2, "", "");
  Copy(2, 6);
  EXPECT_THAT(Rows("HANTI", 6), ElementsAre("0,3=h"));
  EXPECT_EQ(Rows("KUTAIDATA", 6), Rows("KUTAIDATA", 2));
  EXPECT_EQ(Rows("KUTAIDATA", 6).size(), 160u);
}

TEST_F(PageBufferTest, AClearedBufferWritesOnlyAnEmptyGridLineRowOverThePage) {
  sample::PageTexts texts = sample::TypicalPage(3);
  sample::WritePage(*service, 3, texts);
  service->wBuf_Clear();
  service->pPageNo = 3;
  service->WriteDB();
  EXPECT_THAT(Rows("TOORIMEI", 3), ElementsAre("|"));
  for (const std::string& table : kPageTables) {
    const bool kept = table == "SPANTOP" || table == "SPANTANJOIL";
    EXPECT_EQ(Rows(table, 3).empty(), !kept) << table;
  }
}

TEST_F(PageBufferTest, BadStatesRaiseBeforeTheDestinationLosesARow) {
  service->Write_TooriMei(1, "X1", "1");
  clsSeluVorneDataService fresh;
  fresh.KutaiDb = service->KutaiDb;
  fresh.pPageNo = 1;
  EXPECT_RAISES(fresh.WriteDB(), errc::kSubscriptOutOfRange);  // never read
  EXPECT_THAT(Rows("TOORIMEI", 1), ElementsAre("X1|1"));
  service->pPageNo = 4;
  EXPECT_RAISES(service->ReadDB(), errc::kNoCurrentRecord);  // no TOORIMEI row
  fresh.KutaiDb.reset();
  EXPECT_RAISES(fresh.ReadDB(), errc::kObjectNotSet);
}

TEST_F(PageBufferTest, ATextTooLongForTheDestinationKeepsTheRowsWrittenBeforeIt) {
  // A source file whose SPANTANJOIL takes longer texts than the floor file's.
  const std::string wide = MakeFloorFolder(1, 2, 9) + "\\SELUVORN.mdb";
  auto source = frame::CreateDatabaseWithTables(wide, frame::kFloorTables);
  frame::CreateTable(*source, frame::kSpanTopTable);
  frame::CreateTable(*source, {"SPANTANJOIL", frame::floor_fields::kPageRowWithBan});
  service->WriteOpenDb = service->KutaiDb = source;
  Texts hanti({79, 4}), joints({19, 0});
  hanti(0, 0) = "h";
  joints(0, 0) = "12345678901,1";
  service->Write_Hanti(2, hanti);
  service->Write_TanbuJointL(2, joints);
  service->Write_TooriMei(2, "X1", "1");
  service->pPageNo = 2;
  service->ReadDB();

  clsSeluVorneDataService floor;
  floor.WriteOpen(folder);
  floor.KutaiDb = floor.WriteOpenDb;
  service->KutaiDb = floor.KutaiDb;
  service->pPageNo = 7;
  EXPECT_RAISES(service->WriteDB(), errc::kFieldTooSmall);
  EXPECT_THAT(RowsOf(*floor.KutaiDb, "HANTI", 7), ElementsAre("0,0=h"));  // before SPANTANJOIL
  EXPECT_THAT(RowsOf(*floor.KutaiDb, "TOORIMEI", 7), IsEmpty());          // after it
}

}  // namespace
