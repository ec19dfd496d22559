// clsSeluVorneDataService: the page directory, page kinds and the beam
// selection, on real floor files in a scratch data root. The roster's Kind is
// a fake reading the kind text ("G" girder 2, "B" secondary beam 3, "C" 4,
// anything else 0); the selection dialog is the recording stand-in of the
// test support, which plays the user.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "error_matchers.h"
#include "fake_forms.h"
#include "floor_test.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/floor_schema.h"
#include "seluvorne/frame.h"
#include "seluvorne/page_rows.h"
#include "seluvorne/runtime.h"
#include "seluvorne/seluvorne_data_service.h"

namespace {

using namespace seluvorne;
using fakes::RecordingForms;
using fakes::RecordingSelectDialog;
using frame::BeamRoster;
using frame::FloorDirs;
using frame::StepGuide;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using vb::Variant;
namespace fs = std::filesystem;

struct Beam {
  std::int16_t page;
  std::string toori;
  const char* kind = "G";  // nullptr: no kind row
  std::string kasyo = "1";
};

std::vector<Beam> Girders(int count) {
  std::vector<Beam> beams;
  for (int i = 0; i < count; ++i)
    beams.push_back({static_cast<std::int16_t>(i), "X" + std::to_string(i + 1)});
  return beams;
}

// "*001002...": the packed list of pages first .. last (0-based).
std::string Packed(std::initializer_list<int> pages) {
  std::string text = "*";
  for (int page : pages)
    text += vb::Format(page + 1, "000");
  return text;
}

class PageDirectoryTest : public seluvorne::testing::FloorTest {
 protected:
  void SetUp() override {
    FloorTest::SetUp();
    folder = MakeFloorFolder(1, 2, 3);
    fakes.Answer(FloorDirs::kProgId, "CurrFloor", folder);
    fakes.Answer(FloorDirs::kProgId, "BuzaiNo", std::int16_t{1});
    fakes.Answer(BeamRoster::kProgId, "Kind", [](std::span<Variant> args) {
      const std::string text = vb::CStr(args[0]);
      return Variant(static_cast<std::int16_t>(text == "G"   ? 2
                                               : text == "B" ? 3
                                               : text == "C" ? 4
                                                             : 0));
    });
    frame::gForms = forms;
    service = std::make_shared<clsSeluVorneDataService>();
  }
  void TearDown() override {
    service.reset();
    frame::gForms.reset();
    FloorTest::TearDown();
  }

  // The floor file of `folder` with a directory row per beam and a kind row
  // (KUTAIDATA SUBPAGE 0, BANGOU 81) per beam that has a kind.
  void WriteFloor(const std::vector<Beam>& beams) {
    static constexpr std::string_view kNames[] = {"PAGE", "TOORI", "KASYO"};
    static constexpr std::string_view kKinds[] = {"PAGE", "SUBPAGE", "BANGOU", "DATA"};
    clsSeluVorneDataService writer;
    writer.SetCurrKai(folder);
    {
      frame::RowAppender names(*writer.KutaiDb, "TOORIMEI", kNames);
      frame::RowAppender kinds(*writer.KutaiDb, "KUTAIDATA", kKinds);
      for (const Beam& beam : beams) {
        names.Add(std::vector<Variant>{beam.page, beam.toori, beam.kasyo});
        if (beam.kind)
          kinds.Add(std::vector<Variant>{beam.page, std::int16_t{0}, std::int16_t{81}, beam.kind});
      }
    }
    writer.KutaiDb->Close();
  }

  std::string folder;
  std::shared_ptr<RecordingForms> forms = std::make_shared<RecordingForms>();
  std::shared_ptr<clsSeluVorneDataService> service;
};

// ---- Lists of pages ----------------------------------------------------------

TEST_F(PageDirectoryTest, ListsFloorsOfNoneOneAndFiveHundredPages) {
  for (int count : {0, 1, 500}) {
    SCOPED_TRACE(count);
    fs::remove_all(Native(folder));
    WriteFloor(Girders(count));
    std::string all = "*";
    for (int i = 0; i < count; ++i)
      all += vb::Format(i + 1, "000");
    EXPECT_EQ(service->AllPages2(), all);
    EXPECT_EQ(service->AllPages(), all);
    vb::Array<std::int16_t> pages;
    EXPECT_EQ(service->GetAllPages(folder, pages), count - 1);
    if (count > 0) {
      EXPECT_EQ(pages.UBound(), count - 1);
      EXPECT_EQ(pages(count - 1), count - 1);
    }
    service->KutaiDb->Close();
  }
  // No file at all: the open creates the floor, which lists nothing.
  fs::remove_all(Native(folder));
  EXPECT_EQ(service->AllPages2(), "*");
  EXPECT_TRUE(fs::exists(Native(folder + "\\SELUVORN.mdb")));
}

TEST_F(PageDirectoryTest, PackedListsAndListItemsFormatThePageFromOne) {
  WriteFloor({{0, "  X1 "}, {9, "Y2"}, {122, "通り3"}, {999, "Z"}});
  EXPECT_EQ(service->AllPages2(), "*0010101231000");
  forms->user = [](RecordingSelectDialog& dialog) { dialog.result = "ToMenu"; };
  frame::gPageMax = 1000;
  service->SelectedSeluVorneNo(1);
  EXPECT_THAT(forms->kakunin_captions, ElementsAre());
  ASSERT_TRUE(forms->log.size() > 5);
  EXPECT_THAT(std::vector<std::string>(forms->log.begin() + 2, forms->log.begin() + 6),
              ElementsAre("AddItem(  1: X1)", "AddItem( 10: Y2)", "AddItem(123: 通り3)",
                          "AddItem(000: Z)"));
}

TEST_F(PageDirectoryTest, APageOf32767OverflowsTheListAndKeepsTheFile) {
  WriteFloor({{0, "X1"}, {32767, "X2"}});
  EXPECT_RAISES(service->AllPages2(), errc::kOverflow);
  vb::Array<std::int16_t> pages;
  EXPECT_EQ(service->GetAllPages(folder, pages), 1);  // stored numbers need no + 1
  EXPECT_EQ(pages(1), 32767);
}

// ---- Kinds -------------------------------------------------------------------

// Pages 0..5 of kind G, B, C, none, G, B: the member kind 5 or 6 lists the
// secondary beams (Kind 3), any other the girders (Kind 2) and pages whose
// kind text the roster reads as 0; Kind 4 is never listed.
TEST_F(PageDirectoryTest, KindsFilterTheListByTheMemberKind) {
  WriteFloor({{0, "A", "G"},
              {1, "B", "B"},
              {2, "C", "C"},
              {3, "D", nullptr},
              {4, "E", "G"},
              {5, "F", "B"}});
  const struct {
    Variant buzai;
    std::string listed;
  } cases[] = {{std::int16_t{5}, Packed({1, 5})},
               {6.0, Packed({1, 5})},
               {std::int16_t{1}, Packed({0, 3, 4})},
               {std::int16_t{4}, Packed({0, 3, 4})},
               {5.5, Packed({0, 3, 4})}};
  for (const auto& [buzai, listed] : cases) {
    SCOPED_TRACE(vb::CStr(buzai));
    fakes.Answer(FloorDirs::kProgId, "BuzaiNo", buzai);
    EXPECT_EQ(service->AllPages(), listed);
  }
  const std::int16_t kind[] = {0, 1, 4, 0, 0, 1};
  const std::int16_t either[] = {1, 1, 0, 0, 1, 1};
  for (std::int16_t page = 0; page < 6; ++page) {
    std::int16_t asked = page;
    EXPECT_EQ(service->GetKindByPage(asked), kind[page]) << page;
    EXPECT_EQ(service->GetKind2ByPage(asked), either[page]) << page;
    EXPECT_EQ(asked, page);
  }
}

// A floor without kind rows: 0, and -99 in the caller's page, by name too;
// the selection answers "*" without showing the dialog, for either member kind.
TEST_F(PageDirectoryTest, AFloorWithoutKindRowsWritesMinus99IntoTheCallersPage) {
  WriteFloor({{0, "X1", nullptr}, {1, "X2", nullptr}});
  std::int16_t page = 1;
  EXPECT_EQ(service->GetKindByPage(page), 0);
  EXPECT_EQ(page, -99);
  Variant by_name(std::int16_t{1});
  EXPECT_EQ(vb::CInt(CallByName(service, "GetKind2ByPage", CallKind::Method, Ref(by_name))), 0);
  EXPECT_EQ(vb::CInt(by_name), -99);
  for (std::int16_t buzai : {1, 5}) {
    fakes.Answer(FloorDirs::kProgId, "BuzaiNo", buzai);
    EXPECT_EQ(service->SelectedSeluVorneNo(-1), "*");
  }
  fakes.Answer(FloorDirs::kProgId, "BuzaiNo", std::int16_t{1});
  EXPECT_EQ(service->AllPages(), Packed({0, 1}));  // its page is a copy; the kind 0 is wanted
  EXPECT_THAT(forms->log, ::testing::Not(::testing::Contains("ShowModal")));
}

TEST_F(PageDirectoryTest, NamesAndLocationCountsAreTrimmedAndEmptyWhenMissing) {
  WriteFloor({{0, " X1  ", "G", "  12 "}, {4, "Y9", "G", "3"}});
  EXPECT_EQ(service->GetToorimeiByPage(0), "X1");
  EXPECT_EQ(service->GetKasyosuuByPage(0), "12");
  EXPECT_EQ(vb::CStr(CallByName(service, "GetToorimeiByPage", CallKind::Method, std::int16_t{4})),
            "Y9");
  EXPECT_EQ(service->GetToorimeiByPage(1), "");
  EXPECT_EQ(service->GetKasyosuuByPage(-1), "");
}

// ---- The beam selection --------------------------------------------------------

// The calls on the dialog in their order, the remembered values handed over
// and back, and the confirmation form of the beam calculation.
TEST_F(PageDirectoryTest, TheSelectionHandsItsValuesToTheDialogAndBack) {
  WriteFloor({{0, "X1", "G"}, {1, "X2", "B"}, {2, "X3", "G"}});
  forms->user = [](RecordingSelectDialog& dialog) {
    dialog.result = "*001003";
    dialog.kakuninzu_checked = 1;
    dialog.enable_kakuninzu = 0;
  };
  service->SetFromBeamSolver(true);
  service->SetToMenuButtonMei("戻る");
  EXPECT_EQ(forms->dialog->to_menu_caption, "戻る");
  forms->log.clear();
  EXPECT_EQ(service->SelectedSeluVorneNo(1), "*001003");
  EXPECT_THAT(
      forms->log,
      ElementsAre("ClearList", "AddItem(  1: X1)", "AddItem(  3: X3)", "SetMultiSelect(true)",
                  "ShowKakunin(大梁の本体とフカシが計算されます)", "SetEnableKakuninzu(-1)",
                  "SetChkKakuninzuChecked(0)", "ShowModal", "chkKakuninzuChecked",
                  "EnableKakuninzu", "Result", "UnloadSelect", "UnloadKakunin", "DoEvents"));
  // The next showing gets what the last one left; single-select for a switch of 0.
  service->SetFromBeamSolver(false);
  forms->log.clear();
  forms->user = nullptr;
  EXPECT_EQ(service->SelectedSeluVorneNo(0), "");
  EXPECT_THAT(forms->log,
              ElementsAre("Select", "ClearList", "AddItem(  1: X1)", "AddItem(  3: X3)",
                          "SetMultiSelect(false)", "SetEnableKakuninzu(0)",
                          "SetChkKakuninzuChecked(1)", "ShowModal", "chkKakuninzuChecked",
                          "EnableKakuninzu", "Result", "UnloadSelect", "DoEvents"));
}

// The whole calculation excludes no kind; pages above the page limit end the list.
TEST_F(PageDirectoryTest, TheSelectionListsEveryKindInTheWholeCalculationUpToThePageLimit) {
  WriteFloor({{0, "A", "G"},
              {1, "B", "B"},
              {2, "C", "C"},
              {159, "D", "B"},
              {160, "E", "B"},
              {161, "F", "G"}});
  frame::gPageMax = 159;
  fakes.Answer(StepGuide::kProgId, "isAllCalc", true);
  service->SetFromBeamSolver(true);
  service->SelectedSeluVorneNo(1);
  EXPECT_EQ(forms->dialogs_loaded, 1);
  EXPECT_THAT(forms->kakunin_captions, ElementsAre("大梁の本体とフカシが計算されます"));
  std::vector<std::string> items;
  for (const std::string& call : forms->log)
    if (call.starts_with("AddItem")) items.push_back(call);
  EXPECT_THAT(items, ElementsAre("AddItem(  1: A)", "AddItem(  2: B)", "AddItem(  3: C)",
                                 "AddItem(160: D)"));
  EXPECT_EQ(fakes.Created(StepGuide::kProgId), 1);
}

TEST_F(PageDirectoryTest, AnEmptyDirectoryAnswersEmptyWithoutShowingTheDialog) {
  WriteFloor({});
  EXPECT_EQ(service->SelectedSeluVorneNo(1), "");
  EXPECT_THAT(forms->log, ElementsAre("Select", "ClearList"));
}

// The result text back to 0-based pages: three characters each after the "*".
TEST_F(PageDirectoryTest, SelectionByArrayParsesTheResultText) {
  WriteFloor({{0, "X1", nullptr}, {9, "X2", "C"}, {600, "X3", "B"}});
  const struct {
    std::string result;
    std::int16_t count;
    std::vector<std::int16_t> pages;  // after the call; KutaiNo starts as (7, 7, 7) and shrinks
  } cases[] = {{"*003010", 2, {2, 9}},
               {"ToMenu", 0, {7, 7, 7}},
               {"*00301", 1, {2}},
               {"*", 0, {7, 7, 7}},
               {"*003010601600", 4, {2, 9, 600, 599}}};
  for (const auto& [result, count, pages] : cases) {
    SCOPED_TRACE(result);
    forms->user = [&](RecordingSelectDialog& dialog) { dialog.result = result; };
    Variant kutai_no(vb::Array<std::int16_t>({2}));
    for (std::int16_t& page : kutai_no.array<std::int16_t>())
      page = 7;
    Variant listed(std::int16_t{0});
    EXPECT_EQ(vb::CInt(CallByName(service, "SelectedSeluVorneNoByDim", CallKind::PropertyGet,
                                  std::int16_t{1}, Ref(kutai_no), Ref(listed))),
              count);
    const auto& got = kutai_no.array<std::int16_t>();
    EXPECT_THAT(std::vector<std::int16_t>(got.begin(), got.end()), ElementsAreArray(pages));
    EXPECT_EQ(vb::CInt(listed), 3);  // every row: no kind filter, no page limit
    EXPECT_EQ(forms->dialog, nullptr);
  }
}

// ---- Another floor ---------------------------------------------------------------

TEST_F(PageDirectoryTest, IsThereHariNeedsAFileWithANonBlankGridLineName) {
  const struct {
    bool file;
    std::vector<Beam> beams;
    bool answer;
  } cases[] = {{false, {}, false},
               {true, {}, false},
               {true, {{0, ""}, {1, "   "}}, false},
               {true, {{0, " "}, {1, "X2"}}, true}};
  for (const auto& [file, beams, answer] : cases) {
    SCOPED_TRACE(beams.size());
    fs::remove_all(Native(folder));
    fs::create_directories(Native(folder));
    if (file) WriteFloor(beams);
    EXPECT_EQ(service->No_IsThereHari(1, 2, 3), answer);
  }
  // Its own path from the data root; its own table check adds SPANTOP to a
  // file that lacks it; the file is closed again, so it can go.
  fs::remove_all(Native(folder));
  fs::create_directories(Native(folder));
  const std::string file = folder + "\\SELUVORN.mdb";
  frame::CreateDatabaseWithTables(file, std::span(frame::kFloorTables).first(1))->Close();
  fakes.ClearLog();
  EXPECT_FALSE(service->No_IsThereHari(1, 2, 3));
  EXPECT_THAT(fakes.Log(FloorDirs::kProgId), ElementsAre(::testing::HasSubstr("get DataPath")));
  auto db = dao::DBEngine::Instance()->OpenDatabase(file);
  EXPECT_NO_THROW(db->OpenRecordset("SPANTOP")->Close());
  db->Close();
  fs::remove_all(Native(folder));
  EXPECT_FALSE(fs::exists(Native(file)));
}

}  // namespace
