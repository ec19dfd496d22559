// Page copy between floors: every store's rows of a page arriving on another
// floor with the through-bar value, the collaborators called in order, the
// check alone, the destination pages after the last one, and the floor
// directory the copy reads first.

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

TEST_F(PageCopyTest, WithoutDrawingsOnlyTheFirstRebarPassIsPrepared) {
  EXPECT_TRUE(CopyNo(1, 0, PageList({1}), PageList({0})));
  EXPECT_THAT(CallsOf({"ExtraBarStore", "BeamSolver"}),
              ElementsAre("ExtraBarStore.clsExtraBars#1 put Buzai = \"SELU_VORNE\"",
                          "ExtraBarStore.clsExtraBars#1 CopyPathPage_KaiSitei_Ini(\"" + folder +
                              "\", {1%})"));
  clsSeluVorneDataService copy;
  copy.WriteOpen(destination);
  EXPECT_EQ(RowsOf(*copy.WriteOpenDb, "HANTI", 0).size(), 400u);
}

// Mode 0 only checks: the destination floor stays without a file or as it was.
TEST_F(PageCopyTest, TheCheckAloneAnswersAndCopiesNothing) {
  fakes.Answer(frame::Presets::kProgId, "GetHariDefault", std::string("1"));
  frame::LoadPageMax();  // pages up to 499
  const struct {
    const char* name;
    bool add;                               // No_PageCopyAddNo
    std::vector<std::int16_t> destination;  // pages the destination has
    std::vector<std::int16_t> from, to;     // to: No_PageCopyNo's destination list
    bool result;
    const char* message;
  } cases[] = {{"all small", false, {}, {0, 2, 499}, {0, 1, 2}, true, ""},
               {"source 500", false, {}, {0, 500}, {0, 1}, false, "ページの最大数を超えます。"},
               {"add onto empty", true, {}, {0, 1}, {}, true, ""},
               {"add after 497", true, {0, 3, 497}, {0, 1}, {}, true, ""},
               {"add to 500", true, {0, 497}, {0, 1, 2}, {}, false, ""}};
  const std::string file = Native(destination + "\\SELUVORN.mdb");
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    std::filesystem::remove(file);
    if (!c.destination.empty()) {
      clsSeluVorneDataService writer;
      writer.WriteOpen(destination);
      for (std::int16_t page : c.destination)
        writer.Write_TooriMei(page, "Y", "1");
      writer.WriteOpenDb->Close();
    }
    message = "before";
    Pages from = PageList(c.from), to = c.to.empty() ? Pages({0}) : PageList(c.to);
    fakes.ClearLog();
    const bool result = c.add ? service->No_PageCopyAddNo(0, 1, message, 1, 2, 3, from,
                                                          vb::CInt(from.UBound()), 4, 5, 6)
                              : CopyNo(0, 1, from, to);
    EXPECT_EQ(result, c.result);
    EXPECT_EQ(message, c.message);
    EXPECT_EQ(std::filesystem::exists(file), !c.destination.empty());
    EXPECT_THAT(CallsOf({"ExtraBarStore.clsExtraBars#1 put", "ThroughBarStore"}), IsEmpty());
  }
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

// The copy holds its floors' files open across the pages; whether it ends
// normally or by a collaborator's error, it lets go of every one of them.
TEST_F(PageCopyTest, NoFileOfEitherFloorStaysOpenAfterTheCopy) {
  for (bool fails : {false, true}) {
    SCOPED_TRACE(fails ? "ended by a collaborator's error" : "ended normally");
    if (fails)
      fakes.Answer(frame::ThroughBars::kProgId, "SetPathPutHikiToosiSW",
                   [](std::span<vb::Variant>) -> vb::Variant { Raise(errc::kInvalidCall); });
    if (fails)
      EXPECT_RAISES(CopyNo(1, 0, PageList({0, 1, 2}), PageList({0, 1, 2})), errc::kInvalidCall);
    else
      EXPECT_TRUE(CopyNo(1, 0, PageList({0, 1, 2}), PageList({0, 1, 2})));

    vb::Array<std::int16_t> pages;
    vb::Array<std::string> names;
    clsSeluVorneDataService reader;
    EXPECT_EQ(reader.No_GetAllPageNoName(4, 5, 6, pages, names) + 1, fails ? 1 : 3);
    reader.CloseDB();
    // A file still open can be neither deleted nor replaced: the destination's
    // go, the source's are replaced by copies of themselves.
    for (std::string_view file :
         {std::string_view("SELUVORN.mdb"), clsHariFukasiDS::kFileName, clsHariSWDS::kFileName}) {
      const std::string source = folder + "\\" + std::string(file),
                        copied = destination + "\\" + std::string(file);
      if (files::FileExists(copied)) {
        EXPECT_NO_THROW(files::DeleteFile(copied)) << copied;
      }
      files::CopyFile(source, source + ".spare");
      EXPECT_NO_THROW(files::CopyFile(source + ".spare", source)) << source;
      files::DeleteFile(source + ".spare");
    }
  }
}

TEST_F(PageCopyTest, WithoutAProgressObjectTheCopyRaises91BeforeAnyPage) {
  clsSeluVorneDataService bare;
  std::string text;
  Pages from = PageList({0}), to = PageList({0});
  EXPECT_RAISES(bare.No_PageCopyNo(1, 0, text, 1, 2, 3, from, 0, 4, 5, 6, to), errc::kObjectNotSet);
  EXPECT_FALSE(std::filesystem::exists(Native(destination + "\\SELUVORN.mdb")));
}

TEST_F(PageCopyTest, TheDirectoryOfAFloorWithoutAFileIsEmptyAndNothingIsCreated) {
  vb::Array<std::int16_t> pages;
  vb::Array<std::string> names;
  fakes.ClearLog();  // a new object's floor is -1/-1/-1: answered unlooked
  EXPECT_EQ(service->No_GetAllPageNoName(-1, -1, -1, pages, names), -1);
  EXPECT_THAT(fakes.Log(), IsEmpty());
  EXPECT_EQ(service->No_GetAllPageNoName(4, 5, 6, pages, names), -1);
  EXPECT_EQ(service->CurZeneNo, -1);
  EXPECT_FALSE(std::filesystem::exists(Native(destination + "\\SELUVORN.mdb")));
  EXPECT_EQ(service->No_GetAllPageNoName(1, 2, 3, pages, names), 2);
  EXPECT_EQ(names(1), sample::TypicalPage(1).grid_line);
  fakes.ClearLog();
  EXPECT_EQ(service->No_GetAllPageNoName(1, 2, 3, pages, names), 2);  // kept open
  EXPECT_THAT(fakes.Log(), IsEmpty());
}

}  // namespace
