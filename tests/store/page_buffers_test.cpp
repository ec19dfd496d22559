// The page buffers: a page read whole and written as another page, with the
// spare slot, the tables whose rows are never deleted, and bad states.

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

}  // namespace
