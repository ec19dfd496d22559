// clsSeluVorneDataService: the page directory and the beam selection, on real floor files in a
// scratch data root. The roster's Kind is a fake reading the kind text ("G" girder 2, "B" secondary
// beam 3, "C" 4, anything else 0); the selection dialog is the recording stand-in of the test
// support, which plays the user.

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

// ---- Kinds -------------------------------------------------------------------

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

// ---- Another floor ---------------------------------------------------------------

}  // namespace
