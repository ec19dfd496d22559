// The page buffer: a page read whole and written back under pPageNo.

#include "fukasi_fixture.h"

namespace seluvorne::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PageBufferTest : public FukasiTest {
 protected:
  void SetUp() override {
    FukasiTest::SetUp();
    frame::gPageMax = frame::kSmallPageMax;
    floor = MakeFloorWith({{3, 0, 2, 0, 6, "F1"},
                           {3, 1, 0, 1, 19, "150"},
                           {3, 1, 0, 1, 21, ""},
                           {8, 0, 0, 0, 0, "old page 8"}});
    store.WriteDB_Open(floor);
  }
  std::string floor;
  clsHariFukasiDS store;
};

TEST_F(PageBufferTest, ReadDBKeepsOneSpareEntryAndWriteDBWritesUnderPPageNoSkippingEmptyValues) {
  store.pPageNo = 3;
  ASSERT_TRUE(store.ReadDB());
  const auto& buffer = store.wBuf();
  ASSERT_EQ(buffer.page.UBound(), 3);  // three rows and the spare entry
  for (const auto* numbers : {&buffer.span, &buffer.iti, &buffer.syurui, &buffer.code})
    EXPECT_EQ(numbers->UBound(), 3);
  EXPECT_EQ(buffer.data.UBound(), 3);
  EXPECT_EQ(buffer.code(1), 19);
  EXPECT_EQ(buffer.data(1), "150");
  EXPECT_EQ(buffer.page(3), 0);
  EXPECT_EQ(buffer.data(3), "");

  store.pPageNo = 8;
  EXPECT_TRUE(store.WriteDB());
  EXPECT_THAT(Rows(FileIn(floor), " WHERE PAGE = 8"),
              ElementsAre(Row{8, 0, 2, 0, 6, "F1"}, Row{8, 1, 0, 1, 19, "150"}));
  EXPECT_THAT(Rows(FileIn(floor), " WHERE PAGE = 3"), ::testing::SizeIs(3));
}

TEST_F(PageBufferTest, APageWithoutRowsLeavesTheBufferAsItWas) {
  store.pPageNo = 8;
  ASSERT_TRUE(store.ReadDB());
  store.pPageNo = 4;
  EXPECT_FALSE(store.ReadDB());
  EXPECT_EQ(store.wBuf().data(0), "old page 8");
  store.pPageNo = 5;
  store.WriteDB();
  EXPECT_THAT(Rows(FileIn(floor), " WHERE PAGE = 5"),
              ElementsAre(Row{5, 0, 0, 0, 0, "old page 8"}));
}

TEST_F(PageBufferTest, AClearedBufferWritesAnEmptyPage) {
  store.wBuf_Clear();
  const auto& buffer = store.wBuf();
  ASSERT_EQ(buffer.page.UBound(), 0);
  EXPECT_EQ(buffer.page(0), -1);
  EXPECT_EQ(buffer.code(0), -1);
  EXPECT_EQ(buffer.data(0), "");
  store.pPageNo = 3;
  store.WriteDB();
  EXPECT_THAT(Rows(FileIn(floor), " WHERE PAGE = 3"), IsEmpty());
  store.pPageNo = 8;
  store.HariFukasi_Del_DBTBL();
  EXPECT_THAT(Rows(FileIn(floor)), IsEmpty());
}

TEST_F(PageBufferTest, BadUseRaisesBeforeThePageIsDeleted) {
  const std::vector<Row> before = Rows(FileIn(floor));
  store.pPageNo = 8;
  EXPECT_RAISES(store.WriteDB(), errc::kSubscriptOutOfRange);  // nothing read yet
  store.pPageNo = 3;
  store.ReadDB();
  store.pPageNo = 160;  // beyond the page limit
  EXPECT_RAISES(store.WriteDB(), errc::kInvalidCall);
  EXPECT_EQ(Rows(FileIn(floor)), before);

  store.CloseDB();
  EXPECT_RAISES(store.ReadDB(), errc::kObjectNotSet);
  EXPECT_RAISES(store.WriteDB(), errc::kObjectNotSet);
  EXPECT_RAISES(store.HariFukasi_Del_DBTBL(), errc::kObjectNotSet);
}

}  // namespace
}  // namespace seluvorne::testing
