// Page copy between floors: every store's rows of a page arriving on another
// floor with the through-bar value, the collaborators called in order, and
// the destination pages after the last one.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "error_matchers.h"
#include "page_test.h"
#include "seluvorne/files.h"
#include "seluvorne/frame.h"
#include "seluvorne/page_rows.h"
#include "seluvorne/sample_pages.h"

namespace {

using namespace seluvorne;
using seluvorne::testing::kPageTables;
using seluvorne::testing::PageTest;
using seluvorne::testing::RowsOf;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using Pages = vb::Array<std::int16_t>;

Pages PageList(const std::vector<std::int16_t>& pages) {
  Pages list({static_cast<std::int32_t>(pages.size()) - 1});
  std::int32_t i = 0;
  for (std::int16_t page : pages)
    list(i++) = page;
  return list;
}

// Floor 1-2-3 (the fixture's) is the source: typical pages 0 to 2, a
// build-out and a switch row on page 2. Floor 4-5-6 is the destination.
class PageCopyTest : public PageTest {
 protected:
  void SetUp() override {
    PageTest::SetUp();
    sample::WriteFloor(*service, folder, 3);
    service->WriteOpenDb->Close();
    service->WriteOpenDb.reset();

    clsHariFukasiDS build_outs;
    BuildOutAt(build_outs, folder, 2);
    build_outs.SetKigou("F1");
    build_outs.CloseDB();

    static constexpr std::string_view kSwitchFields[] = {"PAGE", "SPAN", "DATAKIND", "DATA"};
    const std::string switches = folder + "\\" + std::string(clsHariSWDS::kFileName);
    clsHariSWDS().Create_SwMDB_TBL(switches);
    auto db = dao::DBEngine::Instance()->OpenDatabase(switches);
    frame::RowAppender(*db, "SELUVORNESW", kSwitchFields)
        .Add(std::vector<vb::Variant>{std::int16_t{2}, std::int16_t{1}, std::int16_t{3}, "on"});
    db->Close();

    destination = MakeFloorFolder(4, 5, 6);
    fakes.Answer(frame::ThroughBars::kProgId, "SetPathGetHikiToosiSW", vb::Variant(true));
    progress = fakes::MakeFakeObject(fakes, "Progress");
    service->SetCopyMergeBar(progress);
    fakes.ClearLog();
  }

  // The build-out store at span 1, upper position, kind 0 of `page` on `floor`.
  static void BuildOutAt(clsHariFukasiDS& store, const std::string& floor, std::int16_t page) {
    store.WriteDB_Open(floor);
    store.SetPage(page);
    store.SetSpan(1);
    store.SetIti(store.ItiNoUe());
    store.SetSyurui(0);
  }

  bool CopyNo(std::int16_t mode, std::int16_t with_sekouzu, Pages from, Pages to) {
    return service->No_PageCopyNo(mode, with_sekouzu, message, 1, 2, 3, from,
                                  vb::CInt(from.UBound()), 4, 5, 6, to);
  }

  std::vector<std::string> CallsOf(std::initializer_list<std::string_view> ids) {
    std::vector<std::string> calls;
    for (const std::string& line : fakes.Log())
      for (std::string_view id : ids)
        if (line.starts_with(id)) calls.push_back(line);
    return calls;
  }

  std::string destination, message = "before";
  Object progress;
};

TEST_F(PageCopyTest, EveryStoresRowsOfThePagesArriveAndTheCollaboratorsAreCalledInOrder) {
  EXPECT_TRUE(CopyNo(1, 1, PageList({0, 2}), PageList({4, 5})));
  EXPECT_EQ(message, "");

  clsSeluVorneDataService source, copy;
  source.WriteOpen(folder);
  copy.WriteOpen(destination);
  for (auto [from, to] : {std::pair{0, 4}, {2, 5}}) {
    for (const std::string& table : kPageTables)
      EXPECT_EQ(RowsOf(*copy.WriteOpenDb, table, to), RowsOf(*source.WriteOpenDb, table, from))
          << table;
    EXPECT_EQ(RowsOf(*copy.WriteOpenDb, "TOORIMEI", to),
              RowsOf(*source.WriteOpenDb, "TOORIMEI", from));
  }
  clsHariFukasiDS build_outs;
  BuildOutAt(build_outs, destination, 5);
  EXPECT_EQ(build_outs.Kigou(), "F1");
  build_outs.CloseDB();
  auto switches = dao::DBEngine::Instance()->OpenDatabase(destination + "\\SeluVorneSW.MDB");
  auto row = switches->OpenRecordset("SELECT * FROM SELUVORNESW;");
  EXPECT_EQ(vb::CInt(row->Value("PAGE")), 5);
  EXPECT_EQ(vb::CStr(row->Value("DATA")), "on");
  row->Close();
  switches->Close();

  const std::string from_bars = folder + "\\Hollenbar.Dat",
                    to_bars = destination + "\\Hollenbar.Dat";
  const std::string rebar = "ExtraBarStore.clsExtraBars#1 ";
  auto bars = [&](int n, int from, int to) {
    const std::string id = "ThroughBarStore.clsThroughBars#" + std::to_string(n) + " ";
    return std::vector<std::string>{
        id + "SetPathGetHikiToosiSW(\"" + from_bars + "\", " + std::to_string(from) + "%)",
        id + "SetPathGetHikiToosiSW(\"" + to_bars + "\", " + std::to_string(from) + "%)",
        id + "SetPathPutHikiToosiSW(\"" + to_bars + "\", " + std::to_string(to) + "%, True)"};
  };
  std::vector<std::string> expected = {
      "Progress#1 put Min = 0%",
      "Progress#1 put Max = 2%",
      "Progress#1 put Value = 0%",
      "Progress#1 put Min = 0%",
      "Progress#1 put Max = 2%",
      "Progress#1 put Value = 0%",
      rebar + "put Buzai = \"SELU_VORNE\"",
      rebar + "CopyPathPage_KaiSitei_Ini(\"" + folder + "\", {0%, 2%})",
      "Progress#1 put Value = 1%"};
  for (auto& line : bars(1, 0, 4))
    expected.push_back(line);
  expected.push_back(rebar + "CopyPathPage_KaiSitei(\"" + folder + "\", 0%, 0%, \"" + destination +
                     "\", 4%)");
  expected.push_back("BeamSolver.clsSolverRecords#2 Copy_CalcFile(1%, 2%, 3%, 0%, 4%, 5%, 6%, 4%)");
  expected.push_back("Progress#1 put Value = 2%");
  for (auto& line : bars(2, 2, 5))
    expected.push_back(line);
  expected.push_back(rebar + "CopyPathPage_KaiSitei(\"" + folder + "\", 2%, 1%, \"" + destination +
                     "\", 5%)");
  expected.push_back("BeamSolver.clsSolverRecords#3 Copy_CalcFile(1%, 2%, 3%, 2%, 4%, 5%, 6%, 5%)");
  for (const std::string& line :
       {rebar + "put Buzai = \"FSEL_VORNE\"",
        rebar + "CopyPathPage_KaiSitei_Ini(\"" + folder + "\", {0%, 2%})",
        std::string("Progress#1 put Value = 0%"),
        rebar + "CopyPathPage_KaiSitei(\"" + folder + "\", 0%, 0%, \"" + destination + "\", 4%)",
        std::string("Progress#1 put Value = 1%"),
        rebar + "CopyPathPage_KaiSitei(\"" + folder + "\", 2%, 1%, \"" + destination + "\", 5%)"})
    expected.push_back(line);
  EXPECT_THAT(CallsOf({"Progress", "ExtraBarStore", "BeamSolver", "ThroughBarStore"}),
              ElementsAreArray(expected));
  EXPECT_EQ(fakes.Created("BeamSolver.clsSolverRecords"), 3);  // one per page, one before
}

TEST_F(PageCopyTest, AddNoWritesAfterTheLastPageWithoutFillingGaps) {
  clsSeluVorneDataService writer;
  writer.WriteOpen(destination);
  for (std::int16_t page : {0, 3, 7})
    writer.Write_TooriMei(page, "Y", "1");
  writer.WriteOpenDb->Close();
  Pages from = PageList({2, 1});
  EXPECT_TRUE(service->No_PageCopyAddNo(1, 0, message, 1, 2, 3, from, 1, 4, 5, 6));
  vb::Array<std::int16_t> pages;
  vb::Array<std::string> names;
  ASSERT_EQ(service->No_GetAllPageNoName(4, 5, 6, pages, names), 4);
  std::vector<std::int16_t> listed;
  for (std::int32_t i = 0; i <= pages.UBound(); ++i)
    listed.push_back(pages(i));
  EXPECT_THAT(listed, ElementsAre(0, 3, 7, 8, 9));
  EXPECT_EQ(names(3), sample::TypicalPage(2).grid_line);
}

}  // namespace
